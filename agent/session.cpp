#include "agent/session.hpp"

#include "agent/inform.hpp"
#include "agent/log.hpp"
#include "agent/methods.hpp"
#include "agent/names.hpp"
#include "agent/reach.hpp"
#include "agent/status.hpp"
#include "agent/values.hpp"
#include "device/device.hpp"
#include "device/faults.hpp"
#include "device/paths.hpp"
#include "device/process.hpp"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>

namespace kova::agent {
namespace {

constexpr std::time_t longest_session = 30L * 60; // seconds: an ACS that asks for ever

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string fault_text(const RpcFault &fault) {
  std::string words = "fault " + std::to_string(static_cast<int>(fault.code));
  for (const request::Fault &each : fault.parameters)
    words += "; " + std::to_string(static_cast<int>(each.code)) + " " + each.path;
  return words;
}

// The fault that the ACS has answered with, in words.
std::string fault_of_acs(const Message &message, std::string &code) {
  const auto found =
      message.content.find_node([](const pugi::xml_node &node) { return local_name(node) == "FaultCode"; });
  code = found.text().get();
  return "the management server answers with fault " + (code.empty() ? "without a code" : code);
}

struct RebootOnDemand : HttpError {
  using HttpError::HttpError;
};

// By a process that outlives the session, whose agent goes down.
void reboot_from_within() {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe");
  pid_t process = 0;
  device::start_program(process, {.path = program, .words = {program, "reboot"}, .own_group = true});
}

class Session {
public:
  Session(Store &store, const Server &server, long exchange_seconds, Trace &trace)
      : store_(store), server_(server), connection_(server, exchange_seconds), trace_(trace) {}

  void run(const Report &report) {
    send_inform(report);
    for (auto transfer = report.transfers.begin();;) {
      if (std::time(nullptr) - begin_ > longest_session) throw HttpError("the session does not end");
      const bool may_ask = !hold_requests_ && answer_.empty() && transfer != report.transfers.end();
      if (may_ask) {
        report_transfer(*transfer++);
        continue;
      }
      const std::string received = post(answer_);
      answer_.clear();
      if (is_blank(received)) {
        trace_.note("from the ACS: nothing");
        hold_requests_ = false;
        if (transfer == report.transfers.end()) break;
      } else
        serve(received);
    }
    if (!refusal_.empty()) throw HttpError(refusal_);
  }

private:
  Message receive(const std::string &text) {
    try {
      Message message = read_message(text);
      trace_.received(message.document);
      if (!message.cwmp_namespace.empty()) cwmp_namespace_ = message.cwmp_namespace;
      hold_requests_ = message.hold_requests;
      return message;
    } catch (const ProtocolError &) {
      trace_.note("from the ACS: what is no message, " + std::to_string(text.size()) + " bytes");
      throw;
    }
  }

  // With the faults that the device has on demand.
  std::string post(const std::string &text) {
    const device::Faults faults = device::faults();
    std::this_thread::sleep_for(std::chrono::seconds(faults.delay));
    std::string received = connection_.post(text);
    const std::string after = " after message " + std::to_string(++messages_) + ", a fault on demand";
    if (messages_ == faults.reboot_after) throw RebootOnDemand("rebooted" + after);
    if (messages_ == faults.break_after) throw HttpError("broken off" + after);
    return received;
  }

  std::string next_id() { return std::to_string(++last_id_); }

  // Posts a request of the device; answers what came, which is the response, or a fault of the ACS. One that
  // asks for it (8005) gets the request again.
  Message ask(const Outgoing &request, const std::string &name) {
    constexpr int most_attempts = 3;
    for (int attempt = 1;; ++attempt) {
      trace_.sent(request.document());
      Message answer = receive(post(request.text()));
      if (!answer.defect.empty()) throw ProtocolError(answer.defect);
      std::string code;
      if (answer.name == "Fault" && fault_of_acs(answer, code).ends_with("8005") && attempt < most_attempts)
        continue;
      if (answer.name != "Fault" && answer.name != name + "Response")
        throw ProtocolError("the management server answers " + name + " with " + answer.name);
      return answer;
    }
  }

  void send_inform(const Report &report) {
    const Message answer = ask(inform(store_, report, next_id()), "Inform");
    std::string code;
    if (answer.name == "Fault") throw HttpError(fault_of_acs(answer, code));
    store_.change([&](Transaction &change) {
      acknowledge(change, report, server_.url);
      clear_retries(change);
    });
  }

  void report_transfer(const Transfer &transfer) {
    Outgoing request(cwmp_namespace_, next_id());
    pugi::xml_node call = request.call("TransferComplete");
    add(call, "CommandKey", transfer.command_key);
    pugi::xml_node fault = call.append_child("FaultStruct");
    add(fault, "FaultCode", std::to_string(transfer.fault_code));
    add(fault, "FaultString", transfer.fault_text);
    const bool went_well = transfer.fault_code == 0;
    add(call, "StartTime", went_well ? utc_time(transfer.start) : unknown_time);
    add(call, "CompleteTime", went_well ? utc_time(transfer.complete) : unknown_time);
    const Message answer = ask(request, "TransferComplete");
    std::string code;
    if (answer.name == "Fault") {
      refusal_ = fault_of_acs(answer, code) + " to TransferComplete";
      return;
    }
    log("TransferComplete " + transfer.command_key);
    store_.change([&transfer](Transaction &change) { forget(change, transfer); });
  }

  void serve(const std::string &received) {
    const Message request = receive(received);
    if (request.content.empty()) return;
    Outgoing answer(cwmp_namespace_, request.id);
    try {
      call(request, answer);
      log(request.name);
    } catch (const RpcFault &fault) {
      log(request.name + ": " + fault_text(fault));
      answer = Outgoing(cwmp_namespace_, request.id);
      answer.fault(fault);
    }
    trace_.sent(answer.document());
    answer_ = answer.text();
  }

  void call(const Message &request, Outgoing &answer) {
    if (!request.defect.empty()) throw invalid_arguments(request.defect);
    const auto method = std::ranges::find(methods(), request.name, &NamedMethod::name);
    if (method == methods().end())
      throw RpcFault{request::FaultCode::MethodNotSupported, cut(xml_text(request.name), 100)};
    try {
      const device::Turn turn;
      method->serve(store_, request.content, answer.call(request.name + "Response"));
    } catch (const std::exception &error) {
      throw RpcFault{request::FaultCode::InternalError, error.what()};
    }
  }

  Store &store_;
  const Server &server_;
  Connection connection_;
  Trace &trace_;
  const std::time_t begin_ = std::time(nullptr);
  std::string cwmp_namespace_{cwmp_1_2};
  std::string answer_;  // to the last request of the ACS, not sent yet
  std::string refusal_; // of a report that the ACS did not take
  bool hold_requests_ = false;
  int last_id_ = 0, messages_ = 0;
};

std::string joined(const std::vector<std::string> &words) {
  std::string text;
  for (const std::string &word : words)
    text += (text.empty() ? "" : ", ") + word;
  return text.empty() ? "no event" : text;
}

// The listener's URL with the address of this device that the ACS can reach.
void settle_connection_request_url(Store &store, const Server &server) {
  const auto port = store.get(stored::connection_request_port),
             path = store.get(stored::connection_request_path);
  const auto [host, acs_port] = host_of(server.url);
  std::string address = own_address(host, acs_port);
  if (address.find(':') != std::string::npos) address = "[" + address + "]";
  if (!port || !path || address.empty()) return;
  const std::string url = "http://" + address + ":" + *port + "/" + *path;
  if (store.get(stored::connection_request_url) != url)
    store.change([&url](Transaction &change) { change.put(stored::connection_request_url, url); });
}

} // namespace

Server management_server(Store &store, const TlsFiles &tls) {
  Server server{read_value(store, parameter::url), read_value(store, parameter::username),
                read_value(store, parameter::password), tls};
  const auto on_device = [&store](const char *path) {
    const std::string file = read_value(store, path);
    const bool absolute = file.starts_with('/');
    return absolute && std::filesystem::exists(device::on_device(file)) ? device::on_device(file).string()
                                                                        : "";
  };
  if (server.tls.ca.empty()) server.tls.ca = on_device(parameter::ca_certificate);
  if (server.tls.certificate.empty() && is_true(read_value(store, parameter::client_certificate_enable)))
    server.tls.certificate = on_device(parameter::client_certificate);
  return server;
}

bool run_session(Store &store, const Options &options, Trace &trace) {
  const Server server = management_server(store, options.tls);
  settle_connection_request_url(store, server);
  const Report report = pending_report(store);
  const auto begin = std::chrono::steady_clock::now();
  SessionStatus status = store.read(last_session).follow(report.event_codes());
  store.change([&status](Transaction &change) { put(change, status); });
  log("session: " + joined(status.events));
  long retry_after = 0;
  bool reboot = false;
  try {
    Session(store, server, options.exchange_seconds, trace).run(report);
  } catch (const HttpError &error) {
    status.failure = error.what();
    retry_after = error.retry_after;
    reboot = dynamic_cast<const RebootOnDemand *>(&error) != nullptr;
  } catch (const std::exception &error) {
    status.failure = error.what();
  }
  status.running = false;
  status.end = std::time(nullptr);
  status.duration = std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
  const bool well = status.failure.empty();
  store.change([&](Transaction &change) {
    put(change, status);
    if (!well) add_retry(change, options.least_retry_wait, retry_after);
  });
  log("session: " + (well ? std::string("ended") : "failed: " + status.failure));
  if (reboot) reboot_from_within();
  return well;
}

} // namespace kova::agent
