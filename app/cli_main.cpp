/// velkoro-cli: who is wired to whom, and main.
#include "cli/command.h"

int main(int argc, char** argv)
{
    return velkoro::cli_run(argc, argv);
}
