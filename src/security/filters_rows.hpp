// What the rows of the packet filters say alike.
#pragma once

namespace kova::security {

inline constexpr const char
    filter_mode[] = "0: all but the black list pass, 1: only the white list; set while the filter is on",
    filter_log[] = "Whether what is dropped is logged; set while the filter is on",
    packet_fields[] =
        "srcIPBegin,srcIPEnd,srcPortBegin,srcPortEnd,dstIPBegin,dstIPEnd,dstPortBegin,dstPortEnd,"
        "protocol,comment";

} // namespace kova::security
