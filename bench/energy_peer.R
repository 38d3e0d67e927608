# The peer for the benchmark: the R package energy (Debian r-cran-energy) on
# the same data as our engine. Only the call itself is timed, not reading the
# file. Prints key=value pairs on one line.
#
#   Rscript energy_peer.R dcor FILE.csv        dcor of the first two columns
#   Rscript energy_peer.R dcor-pairs FILE.csv  dcor of every pair of columns
#   Rscript energy_peer.R dcov-test FILE.csv   dcov.test(x, y, R = 999)
#
# energy's dcor is the square root of our statistic (the squared-scale ratio),
# so value= reports dcor^2 for a cross-check.
suppressMessages(library(energy))

args <- commandArgs(trailingOnly = TRUE)
if (length(args) != 2) stop("usage: energy_peer.R dcor|dcor-pairs|dcov-test FILE.csv")
mode <- args[1]
d <- read.csv(args[2])

timed <- function(expr) {
  t0 <- proc.time()
  value <- force(expr)
  t1 <- proc.time()
  elapsed <- t1 - t0
  list(value = value,
       cpu = unname(elapsed["user.self"] + elapsed["sys.self"]),
       wall = unname(elapsed["elapsed"]))
}

if (mode == "dcor") {
  r <- timed(dcor(d[[1]], d[[2]]))
  value <- r$value^2
} else if (mode == "dcor-pairs") {
  p <- ncol(d)
  r <- timed({
    v <- numeric(0)
    for (i in 1:(p - 1)) for (j in (i + 1):p) v <- c(v, dcor(d[[i]], d[[j]]))
    v
  })
  value <- r$value[1]^2
} else if (mode == "dcov-test") {
  set.seed(2000000)
  r <- timed(dcov.test(d[[1]], d[[2]], R = 999))
  value <- r$value$p.value
} else {
  stop("unknown mode ", mode)
}
cat(sprintf("peer=energy-%s mode=%s cpu=%.6g wall=%.6g value=%.6g\n",
            as.character(packageVersion("energy")), mode, r$cpu, r$wall, value))
