// Why a request is refused: the fault codes of CWMP.
#pragma once

#include <string>
#include <string_view>

namespace kova::request {

enum class FaultCode {
  MethodNotSupported = 9000,
  RequestDenied,
  InternalError,
  InvalidArguments,
  ResourcesExceeded,
  InvalidName,
  InvalidType,
  InvalidValue,
  NotWritable,
  NotificationRejected,
  TransferFailure,
  UploadFailure,
  ServerAuthenticationFailure,
  UnsupportedTransferProtocol,
  MulticastFailure,
  ServerNotContacted,
  FileNotAccessed,
  DownloadIncomplete,
  FileCorrupted,
  FileAuthenticationFailure,
};

// As the standard words it.
std::string_view text(FaultCode code);

struct Fault {
  std::string path; // of the parameter, or what was given in its place
  FaultCode code;
  std::string detail; // what a person would ask next; "" when there is nothing to say
};

} // namespace kova::request
