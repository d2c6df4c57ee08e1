// Transfers over USB: the same sessions, without acknowledgements on the pipes.
#include "comm/gar_codec_wp.h"
#include "comm/transfer.h"
#include "core/job.h"
#include "tests/comm/simulated_pipes.h"
#include "tests/comm/transfer_rig.h"

#include <gtest/gtest.h>

using namespace velkoro;

namespace {

class UsbTransfer : public testing::Test {
protected:
    transfer_rig rig{};
    simulated_pipes pipes{};

    void SetUp() override
    {
        pipes.interrupt.push_back(usb_wire(0, 6, std::string(4, '\1'))); // the session has started
        gives(255, le16(194) + le16(340) + "GPSMAP 76S" + std::string(1, '\0'));
        gives(253, "L" + le16(1) + "A" + le16(10) + "A" + le16(100) + "D" + le16(103));
    }
    /// A packet on the interrupt pipe, in transfers of at most 64 bytes.
    void gives(int id, const std::string& data)
    {
        const std::string bytes = usb_wire(20, id, data);
        for (std::size_t at = 0; at < bytes.size(); at += 64)
            pipes.interrupt.push_back(bytes.substr(at, 64));
    }
    std::vector<int> written_ids() const
    {
        std::vector<int> ids;
        for (const std::string& bytes : pipes.written)
            if (bytes.size() >= 12 && bytes[0] == 20)
                ids.push_back(static_cast<unsigned char>(bytes[4]));
        return ids;
    }
};

} // namespace

TEST_F(UsbTransfer, WaypointsAreReadWithoutAcknowledgements)
{
    gives(27, le16(3));
    for (int n = 0; n < 3; ++n)
        gives(35, waypoint_packet(n, 103).data);
    gives(12, le16(7));
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(rig.names(), "W0000 W0001 W0002");
    EXPECT_EQ(written_ids(), (std::vector<int>{254, 10}));
    EXPECT_EQ(pipes.closes, 1);
}

TEST_F(UsbTransfer, AListThatEndsInSilenceIsKeptAsFarAsItCame)
{
    gives(27, le16(3));
    gives(35, waypoint_packet(0, 103).data);
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::broken_off);
    EXPECT_EQ(rig.names(), "W0000");
    EXPECT_EQ(pipes.closes, 1);
}

TEST_F(UsbTransfer, WaypointsAreWrittenOneBehindTheOther)
{
    for (int n = 0; n < 3; ++n) {
        wayp_rec w = some_waypoint(n);
        wayp_insert(w, 0);
    }
    rig.run("W_S");
    EXPECT_EQ(transfer.end, transfer_end::whole);
    EXPECT_EQ(written_ids(), (std::vector<int>{254, 27, 35, 35, 35, 12}));
    EXPECT_EQ(transfer.records, 3);
}

TEST_F(UsbTransfer, CancelEndsItBetweenTwoPackets)
{
    gives(27, le16(90));
    for (int n = 0; n < 90; ++n)
        gives(35, waypoint_packet(n, 103).data);
    const auto write = platform.usb.read_interrupt;
    int reads = 0;
    platform.usb.read_interrupt = [&](int handle, std::size_t most) {
        if (++reads == 20)
            op.Abbr.click();
        return write(handle, most);
    };
    rig.run("W_L");
    EXPECT_EQ(transfer.end, transfer_end::cancelled);
    EXPECT_GT(store.wp_top, 1);
    EXPECT_LT(store.wp_top, 20);
    EXPECT_EQ(written_ids(), (std::vector<int>{254, 10, 12}));
}
