# SPDX-License-Identifier: MIT
# Prints the figures that BivariateExamples_test.cpp expects. Run in examples/: Rscript ../tests/statistics/bivariate_examples.R
# A millionth of the row number is added to both fields, so that no two values are equal and one ranking is right.
options(digits = 15)

figures <- function(file, xName, yName) {
  d <- read.csv(file)
  n <- nrow(d)
  x <- d[[xName]] + 1e-6 * seq_len(n)
  y <- d[[yName]] + 1e-6 * seq_len(n)
  pair <- !is.na(x) & !is.na(y)
  v <- sum(pair)
  mx <- mean(x, na.rm = TRUE)
  my <- mean(y, na.rm = TRUE)
  sx <- sd(x, na.rm = TRUE)
  sy <- sd(y, na.rm = TRUE)
  covariance <- sum(((x - mx) * (y - my))[pair]) / (n - 1)
  r <- covariance / sx / sy
  rx <- rank(ifelse(is.na(x), -1e32, x))
  ry <- rank(ifelse(is.na(y), -1e32, y))
  cat(file, xName, yName, v, covariance, r, sum(((x - y)^2)[pair]) / (2 * v), "\n")
  cat("  yOnX", r * sy / sx, my - mx * r * sy / sx, "xOnY", r * sx / sy, mx - my * r * sx / sy, "\n")
  cat("  rank", cor(rx[pair], ry[pair]) * (v - 1) / v, "\n")
  curve(x[pair], y[pair])
  curve(y[pair], x[pair])
}

# Points of the curve, and its first, fourth and last.
curve <- function(a, b) {
  o <- order(a)
  v <- length(a)
  w <- max(v %/% 32, 3) %/% 2 * 2 + 1
  k <- unique(c(seq(0, v - 1, by = w), v - 1))
  means <- sapply(k, function(k) mean(b[o][max(k - w %/% 2, 0):min(k + w %/% 2, v - 1) + 1]))
  for (i in c(1, 4, length(k))) cat("  point", i, "of", length(k), a[o][k[i] + 1], means[i], "\n")
}

figures("walker.csv", "V", "U")
figures("quakes.csv", "depth", "mag")
