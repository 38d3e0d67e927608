#pragma once

class CommandDescriptor;

// Describes the grammar of DEPENDENCE to the host parser:
//   DEPENDENCE VARIABLES=list [WITH list] [CONTROL=list]
//     /CRITERIA STATISTIC={U|V} EXPONENT=number MODE={PAIRS|SETS}
//     /TEST {TTEST | PERMUTATION(SEED=n REPLICATES=n) | NONE}
//     /MISSING {LISTWISE | PAIRWISE}
class DependenceCommandDescriber {
public:
    explicit DependenceCommandDescriber(CommandDescriptor& descriptor) : descriptor_(descriptor) {}

    // 0 when the grammar was described, 1 when describing it failed.
    unsigned start();

private:
    CommandDescriptor& descriptor_;
};
