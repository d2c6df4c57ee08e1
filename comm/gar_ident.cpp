#include "comm/gar_ident.h"

#include "comm/comm.h"
#include "comm/gar_codec_wp.h"
#include "comm/gar_proto.h"
#include "comm/garmin_link.h"
#include "comm/mag_link.h"
#include "core/byte_io.h"
#include "core/files.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/log.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/store.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace velkoro {
namespace {

constexpr int pid_extended = 248, pid_protocols = 253, pid_request = 254, pid_product = 255;
constexpr std::size_t shortest_product_frame = 11; // one byte of text
constexpr int text_no_port = 1000, text_no_table = 1010, text_unknown = 1550, text_names = 2037;
constexpr const char* table_file = "Garmin.ini";

void wait_cursor(bool on)
{
    if (gar_ident_run.waiting == on)
        return;
    gar_ident_run.waiting = on;
    platform.busy(on);
}

/// The model: the description up to the words on its software.
std::string model_of(const std::string& description)
{
    const std::string words = lower(description);
    std::size_t at = std::string::npos;
    for (const char* mark : {"soft", "vers", "  "})
        if (at = words.find(mark); at != std::string::npos)
            break;
    if (at == std::string::npos || at == 0)
        return description;
    return std::string(trim(std::string_view(description).substr(0, at)));
}

/// The table from the receiver, when it sends one behind its product data.
bool read_protocol_array()
{
    std::string frame = garmin_comm(pid_ack, pid_product, any_packet, false);
    auto& head = receiver.gar_proto[0];
    if (frame.empty())
        return false;
    if (gar_id(frame) == pid_extended)
        frame = garmin_comm(pid_ack, pid_extended, pid_protocols, false);
    garmin_comm(pid_ack, pid_protocols, no_wait, false);
    head[1] = told_by_receiver;
    gar_proto_from_array(gar_data(frame), receiver.gar_proto);
    return true;
}

/// The table from the file. False when that is missing.
bool read_product_table(int product, int version)
{
    const std::optional<std::string> bytes = read_file(program_path(table_file));
    if (!bytes) {
        wait_cursor(false);
        say(text_no_table, buttons::ok, icon::critical, table_file, shown_path(folders.program));
        gar_ident_run.end_wanted = true;
        return false;
    }
    gar_proto_from_ini(*bytes, product, version, receiver.gar_proto);
    return true;
}

void log_protocols()
{
    if (!log_book.log_on)
        return;
    log_line(" protocols");
    for (const auto& column : receiver.gar_proto) {
        std::string line;
        for (const std::uint16_t cell : column)
            line += (line.empty() ? "" : " ") + std::to_string(cell);
        log_line(line);
    }
}

std::int16_t symbol_set()
{
    switch (receiver.gar_proto[2][1]) {
    case 101:
    case 102:
    case 104:
    case 105:
    case 106:
    case 108:
    case 109:
    case 154:
    case 155: return 2;
    case 103:
    case 107: return 1;
    default: return 0;
    }
}

/// Names that the receiver would cut.
void warn_of_long_names()
{
    constexpr std::size_t short_name = 6;
    const int type = receiver.gar_proto[2][1];
    if (type == 105 || type == 106 || type == 108 || type == 109 || store.wp_name_max < 7)
        return;
    for (int i = 0; i <= store.wp_top; ++i)
        if (store.wp[static_cast<std::size_t>(i)].nam.size() > short_name) {
            say(text_names);
            return;
        }
}

std::string garmin_name(bool full_name)
{
    const std::string frame = garmin_comm(pid_request, "", pid_product, false);
    if (frame.size() < shortest_product_frame)
        return {};
    const std::string data = gar_data(frame);
    byte_reader in(data);
    const auto product = in.le<std::uint16_t>(), version = in.le<std::uint16_t>();
    std::string description = data.size() > 4 ? data.substr(4) : std::string{};
    description.resize(std::min(description.size(), description.find('\0')));
    gar_ident_run.told = description;

    const bool told = read_protocol_array();
    auto& head = receiver.gar_proto[0];
    head[2] = product;
    head[3] = version;
    if (!told && !read_product_table(product, version))
        return {};
    const std::string id = std::to_string(product);
    if (head[0] != 1 && head[0] != 2) {
        wait_cursor(false);
        say(text_unknown, buttons::ok, icon::critical, id);
        return {};
    }
    if (const int commands = receiver.gar_proto[1][0]; commands != 10 && commands != 11) {
        say(text_unknown, buttons::ok, icon::critical, id);
        return {};
    }
    wait_cursor(false);
    log_protocols();
    gar_flags_set();
    warn_of_long_names();
    gar_symbols_use(symbol_set());
    return full_name ? description : model_of(description);
}

/// Field 1 of a sentence is its tag.
std::string field(std::string_view sentence, int number)
{
    std::string_view f;
    while (number-- > 0)
        f = next_field(sentence, ',');
    return std::string(f);
}

std::string magellan_name(bool full_name)
{
    std::string reply = mag_comm("CMD,VERSION", "VER");
    if (!reply.empty())
        mag_comm("CSM," + reply.substr(reply.size() - std::min<std::size_t>(reply.size(), 2)), "");
    reply.resize(std::min(reply.size(), reply.find('*')));
    const std::string model = field(reply, 4);
    gar_ident_run.told = std::string(trim(field(reply, 3) + " " + model));
    receiver.gar_has_prox = false;
    wait_cursor(false);
    gar_symbols_use(0);
    return full_name ? gar_ident_run.told : model;
}

} // namespace

std::string garmin_ident(bool full_name)
try {
    gar_ident_run.told.clear();
    if (comm.comm_port == 0) {
        say(text_no_port);
        return {};
    }
    gar_codec = {};
    wait_cursor(true);
    receiver.gar_proto = {};
    receiver.gar_has_prox = receiver.gar_has_avd = true;
    std::string name = gar_option(gar_place::gar_wp_format) > 0 ? magellan_name(full_name)
                                                                : garmin_name(full_name);
    // Only an unknown command protocol leaves the cursor on.
    if (receiver.gar_proto[0][0] == 0)
        wait_cursor(false);
    return name;
} catch (...) {
    wait_cursor(false);
    trap("garmin_ident");
    return {};
}

void gar_ident_done()
{
    wait_cursor(false);
}

void gar_ident_install()
{
    gar_ident_run = {};
    shell_add(shell.periodic, 9, "receiver_table", [] {
        if (gar_ident_run.end_wanted && job.code.empty()) {
            gar_ident_run.end_wanted = false;
            close_window(Form1.form);
        }
        return true;
    });
}

} // namespace velkoro
