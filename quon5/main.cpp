#include "inc/numbers.h"
#include "quon5/quon5.h"

int main(int argc, char** argv) {
    // Numbers are read and printed the same way whatever locale a linked library may set.
    uselocale(c_locale());
    return run_sequence(argc, argv);
}
