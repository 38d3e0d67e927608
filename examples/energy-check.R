# Recomputes the numbers of the worked examples in docs/commands.md with R's
# energy package, independently of distcorr. Run from the repository root:
#   Rscript examples/energy-check.R > examples/energy-check.out
# energy reports the square roots of distcorr's statistics:
#   dCov = dcov(x, y)^2, dVar = dcov(x, x)^2, dCor = dcor(x, y)^2.
suppressPackageStartupMessages(library(energy))

study <- read.csv("examples/study.csv", na.strings = c("", "-9"))
five <- read.csv("examples/five.csv")

r4 <- function(v) sprintf("%.4f", v)

# Fisher-z interval of a dCor with se = 1/sqrt(n - 3).
fisher <- function(r, n, level = 95) {
  r <- min(max(r, 1e-8), 0.99999999)
  z <- atanh(r)
  zcrit <- qnorm(1 - (1 - level / 100) / 2)
  se <- 1 / sqrt(n - 3)
  c(max(0, tanh(z - zcrit * se)), min(1, tanh(z + zcrit * se)))
}

pairs_of <- function(data, vars, label) {
  data <- data[complete.cases(data[, vars]), vars]
  n <- nrow(data)
  cat(sprintf("== %s: %d complete cases\n", label, n))
  for (v in vars) {
    x <- data[[v]]
    m <- round(mean(x), 4)
    s <- sqrt(sum((x - m)^2) / (n - 1))
    cat(sprintf("%-8s mean %.3f  sd %.3f  min %.3f  max %.3f  dVar %s\n", v, m, s, min(x), max(x),
                r4(dcov(x, x)^2)))
  }
  for (i in seq_along(vars)) for (j in seq_along(vars)) if (i < j) {
    x <- data[[vars[i]]]
    y <- data[[vars[j]]]
    r <- dcor(x, y)^2
    ci <- fisher(r, n)
    cat(sprintf("%s vs. %s  dCov %s  dCor %s  CI %s %s  (dCor %.10f)\n", vars[i], vars[j],
                r4(dcov(x, y)^2), r4(r), r4(ci[1]), r4(ci[2]), r))
  }
}

pairs_of(study, c("score", "hours"), "study: score hours")
pairs_of(study, c("score", "hours", "sleep"), "study: score hours sleep")
pairs_of(five, c("x", "y"), "five: x y")
pairs_of(five, c("x", "ysmall"), "five: x ysmall (no rescaling)")
cat(sprintf("dVar(ysmall) unrounded: %.6g\n", dcov(five$ysmall, five$ysmall)^2))
z <- function(v) (v - mean(v)) / sd(v)
zfive <- data.frame(x = z(five$x), ysmall = z(five$ysmall))
pairs_of(zfive, c("x", "ysmall"), "five: x ysmall after ZSCORE")
