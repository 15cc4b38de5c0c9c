#include "model/rows.hpp"

#include <kova/management.h>

namespace kova::model {
namespace {

// clang-format off
#define GATEWAY "InternetGatewayDevice."
#define INFO    GATEWAY "DeviceInfo."

constexpr Parameter rows[] = {
    READ_ONLY (GATEWAY "DeviceSummary", String, kovaGetTR069DeviceSummary,
               "", "The data models and profiles of this device"),
    READ_ONLY (INFO "Manufacturer", String, kovaGetTR069Manufacturer, "", "Maker of the device"),
    READ_ONLY (INFO "ManufacturerOUI", String, kovaGetTR069ManufacturerOUI,
               "", "Organisation identifier of the maker, six hexadecimal digits"),
    READ_ONLY (INFO "ModelName", String, kovaGetTR069ModelName, "", "Name of the model"),
    READ_ONLY (INFO "Description", String, kovaGetTR069Description, "", "What the device is, in words"),
    READ_ONLY (INFO "ProductClass", String, kovaGetTR069ProductClass,
               "", "Product line, within which serial numbers differ"),
    READ_ONLY (INFO "SerialNumber", String, kovaGetTR069SerialNumber,
               "", "Serial number; the IMEI while none is known"),
    READ_ONLY (INFO "HardwareVersion", String, kovaGetTR069HardwareVersion,
               "", "Version of the hardware; N/A while it is not known"),
    READ_ONLY (INFO "SoftwareVersion", String, kovaGetTR069SoftwareVersion, "", "Version of the firmware"),
    READ_ONLY (INFO "ModemFirmwareVersion", String, kovaGetTR069ModemFirmwareVersion,
               "", "Version of the LTE modem's firmware"),
    READ_ONLY (INFO "AdditionalSoftwareVersion", List, kovaGetTR069AdditionalSoftwareVersion,
               "", "Versions of further software"),
    READ_ONLY (INFO "SpecVersion", String, kovaGetTR069SpecVersion, "", "Version of the data model"),
    READ_WRITE(INFO "ProvisioningCode", String, kovaGetTR069ProvisioningCode, kovaSetTR069ProvisioningCode,
               "", "Provisioning information for the server; setting it also synchronises the clock"),
    READ_ONLY (INFO "UpTime", UnsignedInt, kovaGetTR069UpTime, "s", "Time since the device started"),
    READ_ONLY (INFO "X_KOVA_ConnectionTime", UnsignedInt, kovaGetTR069ConntionTime,
               "s", "Time since the LTE connection came up, 0 without one"),
    READ_ONLY (INFO "MemoryStatus.Total", UnsignedInt, kovaGetTR069MemoryStatusTotal,
               "kB", "Memory of the device, in units of 1000 bytes"),
    READ_ONLY (INFO "MemoryStatus.Free", UnsignedInt, kovaGetTR069MemoryStatusFree,
               "kB", "Free memory, in units of 1000 bytes"),
    READ_ONLY (INFO "DeviceLog", String, kovaGetTR069DeviceLog, "", "The device's log, many lines"),
    READ_WRITE(INFO "X_KOVA_MapnQoS", String, kovaGetTR069MapnQos, kovaSetTR069MapnQos,
               "", "Quality of service of the bearers; a set is accepted without effect"),
};
// clang-format on

} // namespace

std::span<const Parameter> device_info_rows() {
  return rows;
}

} // namespace kova::model
