// The state of the telephone line, as the voice service writes it.
#pragma once

namespace kova::voice {

inline constexpr const char *call_file = "/tmp/voip-call-status.txt",
                            *registration_file = "/tmp/voip-reg-status.txt";

// What stands in the file; "None" while nothing does.
int answer_status(const char *path, char *buf, unsigned int buflen);

} // namespace kova::voice
