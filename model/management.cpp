#include "model/rows.hpp"

#include <kova/management.h>

namespace kova::model {
namespace {

// clang-format off
#define SERVER "InternetGatewayDevice.ManagementServer."
#define WIFI   "InternetGatewayDevice.LANDevice.1.WLANConfiguration.1."

constexpr Parameter rows[] = {
    READ_WRITE(SERVER "URL", String, kovaGetTR069ManagementServerURL, kovaSetTR069ManagementServerURL,
               "", "Where the management server is"),
    READ_WRITE(SERVER "Username", String, kovaGetTR069ManagementServerUsername, kovaSetTR069ManagementServerUsername,
               "", "User name with which the device logs in to the management server"),
    READ_WRITE(SERVER "Password", String, kovaGetTR069ManagementServerPassword, kovaSetTR069ManagementServerPassword,
               "", "Password for that, shown as it is stored"),
    READ_WRITE(SERVER "PeriodicInformEnable", Boolean,
               kovaGetTR069PeriodicInformEnable, kovaSetTR069PeriodicInformEnable,
               "", "Whether the device reports periodically"),
    READ_WRITE(SERVER "PeriodicInformInterval", UnsignedInt,
               kovaGetTR069PeriodicInformInterval, kovaSetTR069PeriodicInformInterval,
               "s", "Time between the reports; cannot be set while the primary instance's are off"),
    READ_WRITE(SERVER "PeriodicInformTime", DateTime,
               kovaGetTR069PeriodicInformTime, kovaSetTR069PeriodicInformTime,
               "", "A time at which a report is due, from which the others are counted"),
    RESULT    (SERVER "ParameterKey", String, kovaGetTR069ParameterKey, kovaSetTR069ParameterKey,
               "", "Mark of the server's last change of settings"),

    // How the server calls back.
    RESULT    (SERVER "ConnectionRequestURL", String,
               kovaGetTR069ConnectionRequestURL, kovaSetTR069ConnectionRequestURL,
               "", "Where the device takes connection requests; empty while it has no address"),
    READ_WRITE(SERVER "ConnectionRequestUsername", String,
               kovaGetTR069ConnectionRequestUsername, kovaSetTR069ConnectionRequestUsername,
               "", "User name for connection requests"),
    READ_WRITE(SERVER "ConnectionRequestPassword", String,
               kovaGetTR069ConnectionRequestPassword, kovaSetTR069ConnectionRequestPassword,
               "", "Password for connection requests, shown as it is stored"),
    RESULT    (SERVER "UDPConnectionRequestAddress", String,
               kovaGetTR069UDPConnectionRequestAddress, kovaSetTR069UDPConnectionRequestAddress,
               "", "Address and port at which UDP connection requests arrive"),
    READ_WRITE(SERVER "UDPConnectionRequestAddressNotificationLimit", UnsignedInt,
               kovaGetTR069UDPConnectionRequestAddressNotificationLimit,
               kovaSetTR069UDPConnectionRequestAddressNotificationLimit,
               "s", "Least time between notices of a changed address; reads empty"),

    // NAT traversal.
    READ_WRITE(SERVER "STUNEnable", Boolean, kovaGetTR069STUNEnable, kovaSetTR069STUNEnable,
               "", "Whether STUN is used; reads as it was set"),
    READ_WRITE(SERVER "STUNServerAddress", String, kovaGetTR069STUNServerAddress, kovaSetTR069STUNServerAddress,
               "", "Name or address of the STUN server"),
    READ_WRITE(SERVER "STUNServerPort", UnsignedInt, kovaGetTR069STUNServerPort, kovaSetTR069STUNServerPort,
               "", "Port of the STUN server"),
    READ_WRITE(SERVER "STUNUsername", String, kovaGetTR069STUNUsername, kovaSetTR069STUNUsername,
               "", "User name for STUN; reads empty"),
    READ_WRITE(SERVER "STUNPassword", String, kovaGetTR069STUNPassword, kovaSetTR069STUNPassword,
               "", "Password for STUN; reads empty"),
    READ_WRITE(SERVER "STUNMaximumKeepAlivePeriod", Int,
               kovaGetTR069STUNMaximumKeepAlivePeriod, kovaSetTR069STUNMaximumKeepAlivePeriod,
               "s", "Most time between STUN messages"),
    READ_WRITE(SERVER "STUNMinimumKeepAlivePeriod", UnsignedInt,
               kovaGetTR069STUNMinimumKeepAlivePeriod, kovaSetTR069STUNMinimumKeepAlivePeriod,
               "s", "Least time between STUN messages"),
    RESULT    (SERVER "NATDetected", Boolean, kovaGetTR069NatDetected, kovaSetTR069NatDetected,
               "", "Whether addresses are translated between device and server; reads as it was set"),
    READ_WRITE(SERVER "X_KOVA_STUNRealm", String, kovaGetTR069X_STUNRealm, kovaSetTR069X_STUNRealm,
               "", "Realm for STUN; one for both instances"),

    READ_WRITE(SERVER "X_KOVA_FingerPrintEnable", Boolean,
               kovaGetTR069X_FingerPrintEnable, kovaSetTR069X_FingerPrintEnable,
               "", "Whether the server's fingerprint is verified; one for both instances"),
    READ_WRITE(SERVER "X_KOVA_LogLevel", String, kovaGetTR069X_Loglevel, kovaSetTR069X_Loglevel,
               "", "Log level of the agent; one for both instances"),
    READ_ONLY (SERVER "X_KOVA_SSLEnable", Boolean, kovaGetTR069SSLEnable,
               "", "Whether the device shows a certificate to the server"),
    READ_ONLY (SERVER "X_KOVA_SSLCertificate", String, kovaGetTR069SSLCert,
               "", "Path of the device's certificate"),
    READ_ONLY (SERVER "X_KOVA_SSLCACertificate", String, kovaGetTR069SSLCaCert,
               "", "Path of the certificate with which the server's is verified"),

    READ_ONLY (WIFI "TotalBytesSent", UnsignedInt, kovaGetWLANConfigurationTotalBytesSent,
               "", "Traffic sent; carries its unit: bytes, KB, MB or GB"),
    READ_ONLY (WIFI "TotalBytesReceived", UnsignedInt, kovaGetWLANConfigurationTotalBytesReceived,
               "", "Traffic received; carries its unit: bytes, KB, MB or GB"),
    READ_ONLY (WIFI "TotalPacketsSent", UnsignedInt, kovaGetWLANConfigurationTotalPacketsSent,
               "packets", "Packets sent"),
    READ_ONLY (WIFI "TotalPacketsReceived", UnsignedInt, kovaGetWLANConfigurationTotalPacketsReceived,
               "packets", "Packets received"),
};
// clang-format on

} // namespace

std::span<const Parameter> management_rows() {
  return rows;
}

} // namespace kova::model
