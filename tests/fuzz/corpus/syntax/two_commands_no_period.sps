DISTANCE CORRELATION VARIABLE=x1 x2 /PRINT DISTCORRCOEFF.
distance   correlation variable=x3 x4 /plot scatterplot(xaxis=x3 yaxis=x4)