#include "app/command_line.h"

int main(int argc, char** argv)
{
    // The window, the conversions, the dumps and the usage text: the command
    // line decides which.
    return tornelia::runTornelia(argc, argv);
}
