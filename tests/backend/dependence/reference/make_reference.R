# Generates the seeded data sets of the DEPENDENCE reference tests and the
# values R package energy computes for them. Run from this folder:
#     Rscript make_reference.R
# Writes data/<name>.csv (17 significant digits, so every double reads back
# exactly) and expected.csv (one row per comparison). The tests read both;
# they never run R.
#
# energy's own functions give every value: dcor, dcov (with index), bcdcor,
# dcovU, dcorT.test, pdcor, pdcov, dcor2d. bcdcor, dcovU, dcorT.test, pdcor
# and pdcov take no exponent; for an exponent other than 1 they are given the
# distance objects dist(x)^index, which they accept as distances.
suppressMessages(library(energy))
stopifnot(packageVersion("energy") >= "1.7.11")

write_data <- function(name, frame) {
    out <- frame
    for (col in names(out)) out[[col]] <- sprintf("%.17g", out[[col]])
    write.csv(out, file.path("data", paste0(name, ".csv")), row.names = FALSE, quote = FALSE)
}

sets <- list()
set.seed(20261121)
n <- 50
x <- rnorm(n); z <- rnorm(n)
sets$normal50 <- data.frame(x = x, y = x^2 + 0.5 * rnorm(n), z = z, w = x + z + rnorm(n))
n <- 60
sets$ties60 <- data.frame(x = sample(1:5, n, TRUE), y = sample(1:3, n, TRUE), z = sample(0:1, n, TRUE))
sets$ties60$y <- sets$ties60$y + (sets$ties60$x > 3)
n <- 20
sets$constant20 <- data.frame(x = rnorm(n), k = rep(3.7, n), y = runif(n))
sets$n4 <- data.frame(x = c(1.5, -0.25, 3, 2), y = c(2, 1, 4, 4.5), z = c(0, 1, 1, 0.5))
sets$n5 <- data.frame(x = c(0.1, 0.2, 0.3, 0.4, 0.5), y = c(1, 3, 2, 5, 4), z = c(2, 2, 1, 1, 3))
n <- 200
u <- runif(n)
sets$far200 <- data.frame(x = 1e6 + u, y = 5e5 - 3 * u + 0.1 * rnorm(n), z = 1e-6 * rnorm(n))
n <- 300
a <- rnorm(n); b <- rnorm(n)
sets$sets300 <- data.frame(x1 = a, x2 = b, x3 = rexp(n), y1 = a * b + rnorm(n), y2 = sin(3 * a) + 0.3 * rnorm(n),
                           z1 = b + rnorm(n), z2 = rnorm(n))
n <- 10000
x <- rnorm(n); z <- runif(n)
sets$large10000 <- data.frame(x = x, y = cos(2 * x) + 0.8 * rnorm(n), z = z, r = round(3 * x + z))

# Read the data back as the tests will, so every value is computed on the
# doubles the tests see.
dir.create("data", showWarnings = FALSE)
for (name in names(sets)) {
    write_data(name, sets[[name]])
    sets[[name]] <- read.csv(file.path("data", paste0(name, ".csv")))
}

# One comparison: columns of x, y and (optionally) z, an exponent.
rows <- list()
compare <- function(data, x, y, z = character(0), index = 1, pair2d = FALSE) {
    d <- sets[[data]]
    X <- as.matrix(d[, x, drop = FALSE]); Y <- as.matrix(d[, y, drop = FALSE])
    Dx <- dist(X)^index; Dy <- dist(Y)^index
    r <- list(data = data, x = paste(x, collapse = " "), y = paste(y, collapse = " "),
              z = paste(z, collapse = " "), index = index, n = nrow(d))
    r$dcor <- dcor(X, Y, index = index)
    r$dcov <- dcov(X, Y, index = index)
    r$bcdcor <- bcdcor(Dx, Dy)
    r$dcovU <- dcovU(Dx, Dy)
    t <- suppressWarnings(dcorT.test(Dx, Dy))
    r$T <- unname(t$statistic); r$df <- unname(t$parameter); r$p <- unname(t$p.value)
    # The same upper tail without the cancellation of 1 - pt(T, df).
    r$pUpper <- pt(r$T, r$df, lower.tail = FALSE)
    r$pdcor <- NA; r$pdcov <- NA
    if (length(z) > 0) {
        Dz <- dist(as.matrix(d[, z, drop = FALSE]))^index
        r$pdcor <- unname(pdcor(Dx, Dy, Dz))
        r$pdcov <- unname(pdcov(Dx, Dy, Dz))
    }
    r$dcor2d <- if (pair2d) dcor2d(X[, 1], Y[, 1]) else NA
    rows[[length(rows) + 1]] <<- r
    invisible(gc())
}

compare("normal50", "x", "y", "z", pair2d = TRUE)
compare("normal50", "x", "w", "z", pair2d = TRUE)
compare("normal50", "x", "y", "z", index = 0.5)
compare("normal50", "y", "w", "z", index = 1.5)
compare("normal50", c("x", "z"), c("y", "w"))
compare("ties60", "x", "y", "z", pair2d = TRUE)
compare("ties60", "z", "y", "x", pair2d = TRUE)
compare("ties60", "x", "y", "z", index = 0.7)
compare("constant20", "x", "k", "y", pair2d = TRUE)
compare("constant20", "x", "y", "k", pair2d = TRUE)
compare("n4", "x", "y", "z", pair2d = TRUE)
compare("n4", "x", "y", "z", index = 1.25)
compare("n5", "x", "y", "z", pair2d = TRUE)
compare("far200", "x", "y", "z", pair2d = TRUE)
compare("far200", "y", "z", "x", pair2d = TRUE)
compare("sets300", c("x1", "x2", "x3"), c("y1", "y2"), c("z1", "z2"))
compare("sets300", c("x1", "x2"), c("y1", "y2"), c("z1", "z2"), index = 0.5)
compare("sets300", "x1", "y1", c("z1", "z2"), pair2d = TRUE)
compare("sets300", "x2", "y1", "z1", pair2d = TRUE)
compare("large10000", "x", "y", "z", pair2d = TRUE)
compare("large10000", "x", "r", "z", pair2d = TRUE)

fmt <- function(v) if (is.character(v)) v else ifelse(is.na(v), "NA", sprintf("%.17g", v))
table <- do.call(rbind, lapply(rows, function(r) as.data.frame(lapply(r, fmt), stringsAsFactors = FALSE)))
write.csv(table, "expected.csv", row.names = FALSE, quote = FALSE)
cat("energy", as.character(packageVersion("energy")), "on", R.version.string, ":", nrow(table),
    "comparisons written to expected.csv\n")
