// The keys of the diagnostics tests' parameters that take part in the batch validation.
#pragma once

#include "src/frame/settings.hpp"

namespace kova::key {

inline constexpr OwnKey dl_state = OWN("TR_DLDIAG_STATE");
inline constexpr OwnKey dl_interface = OWN("TR_DLDIAG_IF");
inline constexpr OwnKey dl_url = OWN("TR_DLDIAG_URL");
inline constexpr OwnKey dl_dscp = OWN("TR_DLDIAG_DSCP");

inline constexpr OwnKey ul_state = OWN("TR_ULDIAG_STATE");
inline constexpr OwnKey ul_interface = OWN("TR_ULDIAG_IF");
inline constexpr OwnKey ul_url = OWN("TR_ULDIAG_URL");
inline constexpr OwnKey ul_dscp = OWN("TR_ULDIAG_DSCP");
inline constexpr OwnKey ul_test_file_length = OWN("TR_ULDIAG_FILE_LEN");

inline constexpr OwnKey udp_echo_enable = OWN("TR_UDPECHO_ENABLE");
inline constexpr OwnKey udp_echo_interface = OWN("TR_UDPECHO_IF");
inline constexpr OwnKey udp_echo_source_ip = OWN("TR_UDPECHO_SIPADDR");
inline constexpr OwnKey udp_echo_port = OWN("TR_UDPECHO_PORT");
inline constexpr OwnKey udp_echo_plus_enabled = OWN("TR_UDPECHO_PLUS_ENABLE");

inline constexpr OwnKey ping_state = OWN("TR_PINGDIAG_STATE");
inline constexpr OwnKey ping_host = OWN("TR_PINGDIAG_HOST");
inline constexpr OwnKey ping_count = OWN("TR_PINGDIAG_CNT");
inline constexpr OwnKey ping_timeout = OWN("TR_PINGDIAG_TIMEOUT");
inline constexpr OwnKey ping_data_size = OWN("TR_PINGDIAG_DATA_SIZE");

inline constexpr OwnKey tr_state = OWN("TR_TRACEROUTEDIAG_STATE");
inline constexpr OwnKey tr_host = OWN("TR_TRACEROUTEDIAG_HOST");
inline constexpr OwnKey tr_try_count = OWN("TR_TRACEROUTEDIAG_TRYCNT");
inline constexpr OwnKey tr_timeout = OWN("TR_TRACEROUTEDIAG_TIMEOUT");
inline constexpr OwnKey tr_data_size = OWN("TR_TRACEROUTEDIAG_DATA_SIZE");
inline constexpr OwnKey tr_max_hop_count = OWN("TR_TRACEROUTEDIAG_MAX_HOPS");

} // namespace kova::key
