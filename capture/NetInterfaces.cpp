#include "capture/NetInterfaces.h"

#include "capture/CaptureError.h"

#include <pcap/pcap.h>

namespace TavCapture {

namespace {

bool isUp(bpf_u_int32 flags) {
    if ((flags & PCAP_IF_UP) == 0)
        return false;
    // Only a link the system knows to be missing counts against it: virtual
    // interfaces report no status at all.
    return (flags & PCAP_IF_CONNECTION_STATUS) != PCAP_IF_CONNECTION_STATUS_DISCONNECTED;
}

} // namespace

std::vector<NetInterface> listInterfaces() {
    char error[PCAP_ERRBUF_SIZE] = {};
    pcap_if_t* all = nullptr;
    if (pcap_findalldevs(&all, error) != 0)
        throw CaptureError(std::string("cannot list the network interfaces: ") + error, false);
    std::vector<NetInterface> found;
    for (const pcap_if_t* i = all; i != nullptr; i = i->next)
        found.push_back({i->name, i->description ? i->description : "", isUp(i->flags)});
    pcap_freealldevs(all);
    return found;
}

} // namespace TavCapture
