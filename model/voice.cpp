#include "model/rows.hpp"

#include <kova/voice.h>

namespace kova::model {
namespace {

// clang-format off
#define VOICE   "InternetGatewayDevice.Services.VoiceService.1."
#define PROFILE VOICE "VoiceProfile.1."
#define LINE    PROFILE "Line.1."

constexpr Parameter rows[] = {
    // Servers. Their settings belong to one of the two modes each.
    READ_WRITE(PROFILE "SIP.X_KOVA_Enable", Boolean, kovaGetVoipBasicEnable, kovaSetVoipBasicEnable,
               "", "Whether the telephone line is in service"),
    READ_WRITE(PROFILE "SIP.X_KOVA_ServerMode", UnsignedInt, kovaGetSIPServerMode, kovaSetSIPServerMode,
               "", "0: proxy and registrar, 1: P-CSCF of the mobile network"),
    READ_WRITE(PROFILE "SIP.ProxyServer", String, kovaGetSIPProxyServer, kovaSetSIPProxyServer,
               "", "Proxy; set in server mode 0"),
    READ_WRITE(PROFILE "SIP.ProxyServerPort", UnsignedInt, kovaGetSIPProxyServerPort, kovaSetSIPProxyServerPort,
               "", "Port of the proxy; set in server mode 0"),
    READ_WRITE(PROFILE "SIP.RegistrarServer", String, kovaGetSIPRegistrarServer, kovaSetSIPRegistrarServer,
               "", "Registrar; set in server mode 0"),
    READ_WRITE(PROFILE "SIP.RegistrarServerPort", UnsignedInt,
               kovaGetSIPRegistrarServerPort, kovaSetSIPRegistrarServerPort,
               "", "Port of the registrar; set in server mode 0"),
    READ_WRITE(PROFILE "SIP.UserAgentDomain", String, kovaGetSIPUserAgentDomain, kovaSetSIPUserAgentDomain,
               "", "Domain of the subscriber; set in server mode 0"),
    READ_WRITE(PROFILE "SIP.X_KOVA_PCSCFDomain", String, kovaGetPCSCFServerDomain, kovaSetPCSCFServerDomain,
               "", "P-CSCF; set in server mode 1"),
    READ_WRITE(PROFILE "SIP.X_KOVA_PCSCFPort", UnsignedInt, kovaGetPCSCFServerPort, kovaSetPCSCFServerPort,
               "", "Port of the P-CSCF; set in server mode 1"),
    READ_ONLY (PROFILE "SIP.X_KOVA_PCSCFStatus", String, kovaGetPCSCFServerStatus,
               "", "Address of the P-CSCF in use, or None"),
    TRIGGER   (PROFILE "SIP.X_KOVA_Apply", Boolean, kovaSetVoIPApply,
               "", "1 restarts the line with its new settings; refused during a call, and within 15 s of the last"),

    // Profile.
    READ_WRITE(PROFILE "DTMFMethod", String, kovaGetDTMFMethod, kovasetDTMFMethod, "", "How key tones travel"),
    READ_WRITE(PROFILE "Region", String, kovaGetRegions, kovasetRegions, "", "Country whose tones the line plays"),
    READ_WRITE(PROFILE "RTP.LocalPortMin", UnsignedInt, kovaGetRTPLocalPortMin, kovasetRTPLocalPortMin,
               "", "First port for speech; not above the last"),
    READ_WRITE(PROFILE "RTP.LocalPortMax", UnsignedInt, kovaGetRTPLocalPortMax, kovasetRTPLocalPortMax,
               "", "Last port for speech; not below the first"),
    READ_WRITE(PROFILE "X_KOVA_FaxOption", String, kovaGetFaxOption, kovasetFaxOption, "", "How faxes are carried"),
    READ_WRITE(PROFILE "X_KOVA_DialingInterval", UnsignedInt, kovaGetDialingInterval, kovasetDialingInterval,
               "s", "Longest pause between two digits"),
    READ_WRITE(PROFILE "X_KOVA_OffhookInterval", UnsignedInt, kovaGetOffhookInterval, kovasetOffhookInterval,
               "s", "How long a receiver may be off the hook without a digit"),

    // Line.
    READ_WRITE(LINE "DirectoryNumber", String, kovaGetDirectoryNumber, kovaSetDirectoryNumber,
               "", "Telephone number of the line"),
    READ_ONLY (LINE "Status", String, kovaGetVoiceProfileLineStatus,
               "", "State of the registration, as Registered; None while unknown"),
    READ_ONLY (LINE "CallState", String, kovaGetVoiceProfileLineState,
               "", "State of the call, Idle without one; None while unknown"),
    READ_WRITE(LINE "SIP.AuthUserName", String, kovaGetAuthUserName, kovaSetAuthUserName,
               "", "User name for the registration"),
    READ_WRITE(LINE "SIP.AuthPassword", String, kovaGetAuthPassword, kovaSetAuthPassword,
               "", "Password for the registration; reads as a blank"),
    // Each setter changes what the other one's getter reads.
    READ_WRITE(LINE "VoiceProcessing.X_KOVA_ListenGain", Int, kovaGetListenGain, kovasetListenGain,
               "", "0, -20, -40, -60, -80 or -100; a set shows in the speaker gain"),
    READ_WRITE(LINE "VoiceProcessing.X_KOVA_SpeakerGain", Int, kovaGetSpeakerGain, kovasetSpeakerGain,
               "", "0, -20, -40, -60, -80 or -100; a set shows in the listen gain"),
    READ_WRITE(LINE "Codec.X_KOVA_CompressionTypes", List, kovaGetCompressionType, kovasetCompressionType,
               "", "Primary, secondary and third codec, all different"),
    READ_WRITE(LINE "Codec.X_KOVA_SilenceSuppression", Boolean,
               kovaGetSilenceSuppression, kovasetSilenceSuppression, "", "Whether silence is not transmitted"),
    READ_WRITE(LINE "CallingFeatures.X_KOVA_CallerIDType", String, kovaGetCallerID, kovasetCallerID,
               "", "How the caller's number is shown"),
};
// clang-format on

} // namespace

std::span<const Parameter> voice_rows() {
  return rows;
}

} // namespace kova::model
