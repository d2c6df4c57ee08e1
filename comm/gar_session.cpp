#include "comm/gar_session.h"

#include "comm/comm.h"
#include "comm/garmin_link.h"
#include "core/byte_io.h"
#include "core/job.h"
#include "core/texts.h"

namespace velkoro {
namespace {

constexpr std::size_t most_records = 65535; // the count has two bytes

/// The announced number of records, nothing when the receiver closes the list at once.
std::size_t announced(const std::string& frame)
{
    if (gar_id(frame) != pid_map(pid_records))
        return 0;
    const std::string data = gar_data(frame);
    return byte_reader(data).le<std::uint16_t>();
}

/// Repeats of the record before, as far as they can be told from records that are alike.
struct repeat_finder {
    int naks = comm.naks;
    std::string last{};
    std::vector<std::size_t> doubtful{}; ///< records that equal the one before them

    /// True: the frame was taken before and comes again, as it was asked for again.
    bool repeated(const std::string& frame) const { return comm.naks != naks && frame == last; }

    /// A receiver may announce more than it has. But a packet that is damaged behind one that came
    /// twice is lost: the receiver takes the acknowledgement of the repeat for that of the next.
    transfer_end ended(std::size_t n, std::size_t count) const
    {
        if (n >= count || comm.naks == naks)
            return transfer_end::whole;
        op2.anz2.caption = text(8151, static_cast<long long>(n), static_cast<long long>(count));
        return transfer_end::incomplete;
    }

    void taken(const std::string& frame, std::size_t n)
    {
        if (frame == last)
            doubtful.push_back(n);
        last = frame;
    }
};

transfer_end read_records(int command, int expected, std::size_t count, const gar_sink& sink)
{
    repeat_finder repeats;
    int last_id = pid_map(pid_records);
    std::size_t n = 0;
    while (true) {
        if (!transfer_step(n, count)) {
            garmin_comm(pid_xfer_cmplt, command, any_packet, true);
            return transfer_end::cancelled;
        }
        const std::string frame = garmin_comm(pid_ack, last_id, expected, true);
        if (frame.empty())
            return job.op_cancel ? transfer_end::cancelled : transfer_end::broken_off;
        if (gar_id(frame) == pid_xfer_cmplt)
            return repeats.ended(n, count);
        last_id = gar_id(frame);
        if (repeats.repeated(frame))
            continue;
        if (n == count) {
            // One too many: was it one that the receiver had sent twice?
            if (repeats.doubtful.empty()) {
                say(2690, buttons::ok, icon::critical);
                return transfer_end::too_many;
            }
            sink.forget(repeats.doubtful.back());
            repeats.doubtful.pop_back();
            --n;
            --transfer.records;
        }
        sink.take(frame);
        repeats.taken(frame, n);
        ++n;
        ++transfer.records;
    }
}

} // namespace

transfer_end gar_read_list(int command, int expected, int number, bool first, const gar_sink& sink)
{
    const std::string reply = garmin_comm(pid_command, command, pid_records, false);
    if (reply.empty()) {
        if (first)
            transfer_no_answer();
        return transfer_end::no_receiver;
    }
    const std::size_t count = announced(reply);
    op.anz.caption = text(number, std::to_string(count), transfer.receiver);
    op_progress(0);
    if (count == 0) {
        if (gar_id(reply) != pid_xfer_cmplt)
            garmin_comm(pid_ack, pid_map(pid_records), any_packet, true);
        if (first)
            transfer_nothing_there();
        return transfer_end::empty;
    }
    if (sink.begin)
        sink.begin(count);
    return read_records(command, expected, count, sink);
}

transfer_end gar_write_list(int command, const std::vector<gar_packet>& packets, int number)
{
    if (packets.size() > most_records) {
        op2.anz.caption = text(8121, static_cast<long long>(packets.size()), most_records);
        return transfer_end::declined;
    }
    byte_writer count;
    count.le(static_cast<std::uint16_t>(packets.size()));
    op.anz.caption = text(number, 0);
    op_progress(0);
    if (garmin_comm(pid_records, std::string_view(count.out), pid_ack, false).empty()) {
        transfer_no_answer();
        return transfer_end::no_receiver;
    }
    transfer_end end = transfer_end::whole;
    std::size_t sent = 0;
    for (const gar_packet& p : packets) {
        if (sent % 16 == 0)
            op.anz.caption = text(number, static_cast<long long>(sent));
        if (!transfer_step(sent, packets.size())) {
            end = transfer_end::cancelled;
            break;
        }
        const std::string reply = garmin_comm(p.id, std::string_view(p.data), pid_ack, true);
        if (reply.empty() || gar_id(reply) == pid_xfer_cmplt) { // silent, or closed by the receiver
            end = job.op_cancel ? transfer_end::cancelled : transfer_end::broken_off;
            break;
        }
        ++sent;
        ++transfer.records;
    }
    if (end == transfer_end::broken_off)
        transfer_silent_at(sent);
    // The user has just been asked about a receiver that fell silent: not once more.
    garmin_comm(pid_xfer_cmplt, command, pid_ack, end != transfer_end::broken_off);
    return end;
}

} // namespace velkoro
