# The peer of DependenceBench: R package energy on the same data. Only the
# call is timed. Prints key=value pairs on one line.
#
#   Rscript dependence_peer.R dcor2d FILE.csv     dcor2d of the first two columns
#   Rscript dependence_peer.R dcor-sets FILE.csv  dcor(X, Y), X columns 1-5, Y 6-10
#   Rscript dependence_peer.R dcov-test FILE.csv  dcov.test(x, y, R = 999)
suppressMessages(library(energy))
args <- commandArgs(trailingOnly = TRUE)
if (length(args) != 2) stop("usage: dependence_peer.R dcor2d|dcor-sets|dcov-test FILE.csv")
d <- read.csv(args[2])
start <- proc.time()
value <- switch(args[1],
    "dcor2d" = dcor2d(d[[1]], d[[2]]),
    "dcor-sets" = dcor(as.matrix(d[, 1:5]), as.matrix(d[, 6:10])),
    "dcov-test" = { set.seed(2000000); dcov.test(d[[1]], d[[2]], R = 999)$p.value },
    stop("unknown mode ", args[1]))
used <- proc.time() - start
cat(sprintf("peer=energy-%s mode=%s cpu=%.6g wall=%.6g value=%.10g\n", as.character(packageVersion("energy")),
            args[1], unname(used["user.self"] + used["sys.self"]), unname(used["elapsed"]), value))
