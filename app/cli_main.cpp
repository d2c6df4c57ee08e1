/// velkoro-cli: who is wired to whom, and main.
#include "cli/command.h"
#include "coords/install.h"
#include "core/shell.h"

int main(int argc, char** argv)
{
    velkoro::shell_install();
    velkoro::coords_install();
    return velkoro::cli_run(argc, argv);
}
