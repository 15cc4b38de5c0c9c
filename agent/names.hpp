// Names that more than one part of the agent needs: parameters of the data model, and keys of the agent's
// store.
#pragma once

namespace kova::agent {

namespace parameter {
#define KOVA_GATEWAY "InternetGatewayDevice."
#define KOVA_INFO KOVA_GATEWAY "DeviceInfo."
#define KOVA_SERVER KOVA_GATEWAY "ManagementServer."
constexpr const char *device_summary = KOVA_GATEWAY "DeviceSummary", *manufacturer = KOVA_INFO "Manufacturer",
                     *manufacturer_oui = KOVA_INFO "ManufacturerOUI",
                     *product_class = KOVA_INFO "ProductClass", *serial_number = KOVA_INFO "SerialNumber",
                     *spec_version = KOVA_INFO "SpecVersion", *hardware_version = KOVA_INFO "HardwareVersion",
                     *software_version = KOVA_INFO "SoftwareVersion",
                     *provisioning_code = KOVA_INFO "ProvisioningCode";
constexpr const char *url = KOVA_SERVER "URL", *username = KOVA_SERVER "Username",
                     *password = KOVA_SERVER "Password", *parameter_key = KOVA_SERVER "ParameterKey",
                     *periodic_inform_enable = KOVA_SERVER "PeriodicInformEnable",
                     *periodic_inform_interval = KOVA_SERVER "PeriodicInformInterval",
                     *periodic_inform_time = KOVA_SERVER "PeriodicInformTime",
                     *connection_request_url = KOVA_SERVER "ConnectionRequestURL",
                     *connection_request_username = KOVA_SERVER "ConnectionRequestUsername",
                     *connection_request_password = KOVA_SERVER "ConnectionRequestPassword",
                     *udp_connection_request_address = KOVA_SERVER "UDPConnectionRequestAddress",
                     *stun_enable = KOVA_SERVER "STUNEnable",
                     *stun_server_address = KOVA_SERVER "STUNServerAddress",
                     *stun_server_port = KOVA_SERVER "STUNServerPort",
                     *stun_minimum_keep_alive = KOVA_SERVER "STUNMinimumKeepAlivePeriod",
                     *nat_detected = KOVA_SERVER "NATDetected",
                     *client_certificate_enable = KOVA_SERVER "X_KOVA_SSLEnable",
                     *client_certificate = KOVA_SERVER "X_KOVA_SSLCertificate",
                     *ca_certificate = KOVA_SERVER "X_KOVA_SSLCACertificate";
constexpr const char *external_ip_address =
    KOVA_GATEWAY "WANDevice.1.WANConnectionDevice.1.WANIPConnection.1.ExternalIPAddress";
} // namespace parameter

namespace stored {
constexpr const char *connection_request_url = "connection_request/url", // as the ACS is told
    *connection_request_path = "connection_request/path",
                     *connection_request_port = "connection_request/port",
                     *bootstrapped_url = "bootstrapped", // the ACS that has acknowledged a bootstrap
                         *reboot = "reboot/",            // command keys of what is still to be done
                             *factory_reset = "factory_reset", *schedule = "schedule/",
                     *transfer = "transfer/",
                     *installation = "installation", // a firmware image waits for a boot
                         *diagnostics = "diagnostics/", *next_periodic = "next_periodic",
                     *session = "session", *retries = "retries", *udp_requests = "udp_requests";
} // namespace stored

} // namespace kova::agent
