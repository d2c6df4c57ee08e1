#include "comm/libusb_pipes.h"

#include "core/platform.h"

#include <libusb.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace velkoro {
namespace {

constexpr std::uint16_t vendor = 0x091E, receiver_product = 0x0003;
constexpr const char* first_class = "{2C9C45C2-8E7D-4C08-A12D-816BBAE722C0}";
constexpr unsigned transfer_ms = 2000;
constexpr int the_handle = 1; // one device is open at a time

struct pipes {
    int interface_number = -1;
    unsigned char interrupt_in = 0, bulk_in = 0, bulk_out = 0;
    int bulk_out_size = 0;
    bool whole() const
    {
        return interface_number >= 0 && interrupt_in != 0 && bulk_in != 0 && bulk_out != 0;
    }
};

struct usb_state {
    libusb_context* context = nullptr;
    libusb_device_handle* device = nullptr;
    pipes ends{};
    bool claimed = false;
    bool driver_aside = false; ///< the kernel's own driver had the interface and gets it back
    int error = 0;
};
usb_state usb;

bool started()
{
    if (usb.context == nullptr)
        usb.error = libusb_init(&usb.context);
    return usb.context != nullptr;
}

/// The devices that are connected; given back at the end of the scope.
struct device_list {
    libusb_device** first = nullptr;
    ssize_t count = 0;
    device_list() : count(started() ? libusb_get_device_list(usb.context, &first) : 0) {}
    ~device_list()
    {
        if (first != nullptr)
            libusb_free_device_list(first, 1);
    }
    device_list(const device_list&) = delete;
    device_list& operator=(const device_list&) = delete;
};

std::string path_of(libusb_device* d)
{
    std::array<char, 40> path{};
    std::snprintf(path.data(), path.size(), "/dev/bus/usb/%03u/%03u",
                  unsigned{libusb_get_bus_number(d)}, unsigned{libusb_get_device_address(d)});
    return path.data();
}

pipes pipes_of_setting(const libusb_interface_descriptor& s)
{
    pipes p;
    p.interface_number = s.bInterfaceNumber;
    for (int i = 0; i < s.bNumEndpoints; ++i) {
        const libusb_endpoint_descriptor& e = s.endpoint[i];
        const int type = e.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK;
        const bool in = (e.bEndpointAddress & LIBUSB_ENDPOINT_DIR_MASK) == LIBUSB_ENDPOINT_IN;
        if (type == LIBUSB_TRANSFER_TYPE_INTERRUPT && in) {
            p.interrupt_in = e.bEndpointAddress;
        } else if (type == LIBUSB_TRANSFER_TYPE_BULK && in) {
            p.bulk_in = e.bEndpointAddress;
        } else if (type == LIBUSB_TRANSFER_TYPE_BULK) {
            p.bulk_out = e.bEndpointAddress;
            p.bulk_out_size = e.wMaxPacketSize;
        }
    }
    return p;
}

/// The first interface with all three pipes.
pipes pipes_of(libusb_device* d)
{
    libusb_config_descriptor* config = nullptr;
    pipes found;
    usb.error = libusb_get_active_config_descriptor(d, &config);
    if (usb.error != 0)
        return found;
    for (int i = 0; i < config->bNumInterfaces && !found.whole(); ++i)
        for (int k = 0; k < config->interface[i].num_altsetting && !found.whole(); ++k)
            if (const pipes p = pipes_of_setting(config->interface[i].altsetting[k]); p.whole())
                found = p;
    libusb_free_config_descriptor(config);
    return found;
}

bool of_class(libusb_device* d, const std::string& class_guid)
{
    libusb_device_descriptor about{};
    if (libusb_get_device_descriptor(d, &about) != 0 || about.idVendor != vendor)
        return false;
    const bool usual = about.idProduct == receiver_product;
    return usual == (class_guid == first_class) && pipes_of(d).whole();
}

std::optional<std::string> find(const std::string& class_guid)
{
    const device_list all;
    for (ssize_t i = 0; i < all.count; ++i)
        if (of_class(all.first[i], class_guid))
            return path_of(all.first[i]);
    if (usb.error == 0)
        usb.error = LIBUSB_ERROR_NO_DEVICE;
    return std::nullopt;
}

void close_device()
{
    if (usb.device == nullptr)
        return;
    if (usb.claimed)
        libusb_release_interface(usb.device, usb.ends.interface_number);
    if (usb.driver_aside)
        libusb_attach_kernel_driver(usb.device, usb.ends.interface_number);
    libusb_close(usb.device);
    usb.device = nullptr;
    usb.claimed = usb.driver_aside = false;
}

int open_device(const std::string& path)
{
    close_device();
    const device_list all;
    for (ssize_t i = 0; i < all.count; ++i) {
        libusb_device* d = all.first[i];
        if (path_of(d) != path)
            continue;
        usb.ends = pipes_of(d);
        usb.error = libusb_open(d, &usb.device);
        if (usb.error != 0)
            return 0;
        const int number = usb.ends.interface_number;
        usb.driver_aside = libusb_kernel_driver_active(usb.device, number) == 1 &&
                           libusb_detach_kernel_driver(usb.device, number) == 0;
        usb.error = libusb_claim_interface(usb.device, number);
        usb.claimed = usb.error == 0;
        if (usb.claimed)
            return the_handle;
        close_device();
        return 0;
    }
    return 0;
}

/// One transfer in. Nothing in time is an empty one.
std::optional<std::string> read_pipe(unsigned char pipe, bool bulk, std::size_t most)
{
    if (usb.device == nullptr)
        return std::nullopt;
    std::vector<unsigned char> bytes(most);
    int count = 0;
    usb.error = bulk ? libusb_bulk_transfer(usb.device, pipe, bytes.data(), static_cast<int>(most),
                                            &count, transfer_ms)
                     : libusb_interrupt_transfer(usb.device, pipe, bytes.data(),
                                                 static_cast<int>(most), &count, transfer_ms);
    if (usb.error != 0 && usb.error != LIBUSB_ERROR_TIMEOUT)
        return std::nullopt;
    return std::string(bytes.begin(), bytes.begin() + count);
}

int write_pipe(const std::string& bytes)
{
    if (usb.device == nullptr)
        return -1;
    std::vector<unsigned char> out(bytes.size() + 1); // an empty transfer needs an address too
    std::ranges::copy(bytes, out.begin());
    int count = 0;
    usb.error = libusb_bulk_transfer(usb.device, usb.ends.bulk_out, out.data(),
                                     static_cast<int>(bytes.size()), &count, transfer_ms);
    return usb.error == 0 || usb.error == LIBUSB_ERROR_TIMEOUT ? count : -1;
}

} // namespace

void libusb_pipes_install()
{
    usb_seam& s = platform.usb;
    s.find = find;
    s.open = open_device;
    s.close = [](int) { close_device(); };
    s.packet_size = [](int) -> std::optional<std::uint32_t> {
        if (usb.ends.bulk_out_size <= 0)
            return std::nullopt;
        return static_cast<std::uint32_t>(usb.ends.bulk_out_size);
    };
    s.api_version = [](int) -> std::optional<std::uint32_t> {
        const libusb_version* v = libusb_get_version();
        return v->major * 10000U + v->minor * 100U + v->micro;
    };
    s.write = [](int, const std::string& bytes) { return write_pipe(bytes); };
    s.read_interrupt = [](int, std::size_t most) {
        return read_pipe(usb.ends.interrupt_in, false, most);
    };
    s.read_bulk = [](int, std::size_t most) { return read_pipe(usb.ends.bulk_in, true, most); };
    s.error_text = [] { return std::string(libusb_strerror(usb.error)); };
}

} // namespace velkoro
