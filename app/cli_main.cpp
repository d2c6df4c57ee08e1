/// velkoro-cli: who is wired to whom, and main.
#include "cli/command.h"
#include "comm/install.h"
#include "comm/libusb_pipes.h"
#include "comm/serial_line.h"
#include "coords/install.h"
#include "core/shell.h"

int main(int argc, char** argv)
{
    velkoro::shell_install();
    velkoro::coords_install();
    velkoro::comm_install();
    velkoro::serial_line_install();
    velkoro::libusb_pipes_install();
    return velkoro::cli_run(argc, argv);
}
