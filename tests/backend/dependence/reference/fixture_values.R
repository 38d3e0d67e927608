# energy's values for the end-to-end fixture tests/fixtures/dependence/pairs.csv.
# Run from this folder: Rscript fixture_values.R
# Writes tests/fixtures/dependence/pairs_expected.csv, one row per comparison
# as DEPENDENCE shows it (listwise or pairwise cases as named).
suppressMessages(library(energy))
d <- read.csv("../../../fixtures/dependence/pairs.csv")
rows <- list()
add <- function(label, cases, x, y, z = NULL) {
    X <- as.matrix(d[cases, x, drop = FALSE]); Y <- as.matrix(d[cases, y, drop = FALSE])
    t <- dcorT.test(X, Y)
    r <- data.frame(label = label, n = nrow(X), dcor = dcor(X, Y), dcov = dcov(X, Y), bcdcor = bcdcor(X, Y),
                    dcovU = dcovU(X, Y), T = unname(t$statistic), df = unname(t$parameter),
                    p = pt(unname(t$statistic), unname(t$parameter), lower.tail = FALSE),
                    pdcor = NA, pdcov = NA)
    if (!is.null(z)) {
        Z <- as.matrix(d[cases, z, drop = FALSE])
        r$pdcor <- unname(pdcor(X, Y, Z)); r$pdcov <- unname(pdcov(X, Y, Z))
    }
    rows[[length(rows) + 1]] <<- r
}
all <- complete.cases(d[, c("x", "y", "z", "w")])
every <- rep(TRUE, nrow(d))
add("x vs. y", every, "x", "y")
add("x vs. y listwise", all, "x", "y")
add("x vs. w", all, "x", "w")
add("x z vs. y w", all, c("x", "z"), c("y", "w"))
add("x vs. y | z", every, "x", "y", "z")
add("x vs. y | z w", all, "x", "y", c("z", "w"))
out <- do.call(rbind, rows)
for (col in names(out)[-1]) out[[col]] <- ifelse(is.na(out[[col]]), "NA", sprintf("%.17g", out[[col]]))
write.csv(out, "../../../fixtures/dependence/pairs_expected.csv", row.names = FALSE, quote = FALSE)
