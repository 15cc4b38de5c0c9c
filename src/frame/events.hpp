// CPE events that more than one place sends.
#pragma once

namespace kova::event {

inline constexpr const char nat_changed[] = "fw_nat_cfg changed", access_filter[] = "fw_sec_ddos_filter",
                            sip_rules[] = "fw_sip_rule", web_service[] = "ce_webservice_reinit";

} // namespace kova::event
