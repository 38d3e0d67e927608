* Demo: how study habits relate to exam results (48 students).
* Four scale variables, z-scored, with a permutation test of 999 replicates.
DISTANCE CORRELATION VARIABLE=hours sleep score anxiety
  /ID VARIABLE=id
  /CRITERIA NORMALIZATION=ZSCORE CILEVEL=95 PERMUTATION(SEED=20261120 MAXITERATIONS=999)
  /PRINT DETAILS DISTCORRCOEFF CORREST DISTVAR
  /PLOT SCATTERPLOT(XAXIS=hours YAXIS=score).
