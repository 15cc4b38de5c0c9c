#include "model/rows.hpp"

#include <kova/sas.h>

namespace kova::model {
namespace {

// clang-format off
#define SAS "InternetGatewayDevice.X_KOVA_SAS."

#define REGISTRATION(path, type, field, unit, meaning) \
    READ_WRITE(SAS path, type, sasGetTr069##field, sasSetTr069##field, unit, meaning)
#define GRANT(path, type, field, unit, meaning) \
    READ_WRITE(SAS "Grant." path, type, kovaGetTR069##field, kovaSetTR069##field, unit, meaning)

constexpr Parameter rows[] = {
    REGISTRATION("Enable", String, enableMode, "", "Whether, and how, the device registers"),
    REGISTRATION("UseDomainProxy", Boolean, useDP, "", "Whether a domain proxy registers for the device"),
    REGISTRATION("ServerURL", String, serverURL, "", "The spectrum access system, or its domain proxy"),
    REGISTRATION("RegistrationSteps", String, sas_step_choice, "", "Whether the registration has one step or several"),
    REGISTRATION("UserId", String, UserId, "", "User on whose behalf the device registers"),
    REGISTRATION("FCCId", String, fccId, "", "Certification of the device"),
    REGISTRATION("CallSign", String, callSign, "", "Call sign of the device"),
    REGISTRATION("CBSDCategory", String, cbsdCategory, "", "Category of the device"),
    REGISTRATION("RadioTechnology", String, radioTechnology, "", "Technology of the air interface"),
    READ_ONLY   (SAS "CBSDSerialNumber", String, sasGetTr069cbsdSerialNumber,
                 "", "Serial number for the registration; a fault while it is unknown"),

    REGISTRATION("Antenna.Gain", String, antennaGain, "", "Gain of the antenna"),
    REGISTRATION("Antenna.Azimuth", Int, antennaAzimuth, "degrees", "Where the antenna looks, 0 to 359"),
    REGISTRATION("Antenna.Downtilt", Int, antennaDowntilt, "degrees", "How far it looks down, -90 to 90"),
    REGISTRATION("Antenna.Beamwidth", Int, antennaBeamwidth, "degrees", "How wide it sees, 0 to 360"),
    REGISTRATION("Antenna.Model", String, antennaModel, "", "Model of the antenna"),

    REGISTRATION("Installation.Latitude", Int, CPIlatitude, "10^-6 degrees", "Where the device stands"),
    REGISTRATION("Installation.Longitude", Int, CPIlongitude, "10^-6 degrees", "Where the device stands"),
    REGISTRATION("Installation.Height", String, CPIheight, "m", "How high the device stands"),
    REGISTRATION("Installation.HeightType", String, CPIheightType, "", "Above what the height is measured"),
    REGISTRATION("Installation.IndoorDeployment", String, CPIindoorDeployment, "", "Whether the device stands indoors"),
    REGISTRATION("Installation.GroupType", String, CPIgroupType, "", "Type of the group of the device"),
    REGISTRATION("Installation.GroupId", String, CPIgroupId, "", "Group of the device"),
    REGISTRATION("Installation.InstallerId", String, CPIcpiId, "", "Certified installer's number"),
    REGISTRATION("Installation.InstallerName", String, CPIcpiName, "", "Certified installer's name"),
    REGISTRATION("Installation.CertificationTime", String, CPIinstallCertificationTime,
                 "", "When the installation was certified"),

    REGISTRATION("Cell.Bandwidth", String, cellInfobandwidth, "", "Bandwidth that the cell uses"),
    REGISTRATION("Cell.LowFrequency", String, cellInfolowFrequency, "", "Low end of the cell's frequencies"),
    REGISTRATION("Cell.HighFrequency", String, cellInfohighFrequency, "", "High end of the cell's frequencies"),

    GRANT("MaxEIRP", String, ConfigmaxEirp, "", "Most power that is granted"),
    GRANT("LowFrequency", String, ConfiglowFrequency, "", "Low end of the granted frequencies"),
    GRANT("HighFrequency", String, ConfighighFrequency, "", "High end of the granted frequencies"),
    GRANT("OperationStatus", String, SasOperationStatus, "", "State of the grant; set with a domain proxy"),
    GRANT("RadioEnable", String, ConfigRadioEnable, "", "Whether the radio may transmit; set with a domain proxy"),
    GRANT("PowerSpectralDensity", String, ConfigpowerSpectralDensity,
          "", "Power density that is granted; set with a domain proxy"),
    GRANT("TransmitExpireTime", String, ConfigtransmitExpireTime,
          "", "When the grant ends; set with a domain proxy"),
};
// clang-format on

} // namespace

std::span<const Parameter> sas_rows() {
  return rows;
}

} // namespace kova::model
