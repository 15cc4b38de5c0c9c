// The UDP echo server, for both management instances.
#include "device/fd.hpp"
#include "diag/agent.hpp"

#include <cstring>

namespace kova::test {
namespace {

class Client {
public:
  explicit Client(const char *own_address = "127.0.0.1") {
    sockaddr_in name = named(own_address, 0);
    EXPECT_EQ(bind(socket_.get(), reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
  }
  // The answer; nothing when none comes in that time.
  std::optional<std::string> ask(const std::string &packet, uint16_t port, const char *server = "127.0.0.1",
                                 timeval patience = {10, 0}) const {
    setsockopt(socket_.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    sockaddr_in name = named(server, port);
    EXPECT_EQ(connect(socket_.get(), reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
    send(socket_.get(), packet.data(), packet.size(), 0);
    std::array<char, 65536> bytes{};
    const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), 0);
    if (count < 0) return std::nullopt;
    return std::string(bytes.data(), static_cast<std::size_t>(count));
  }
  std::string ask_until_up(const std::string &packet, uint16_t port) const {
    std::optional<std::string> answer;
    EXPECT_TRUE(eventually([&] { return (answer = ask(packet, port)).has_value(); }));
    return answer.value_or("");
  }

  static sockaddr_in named(const char *address, uint16_t port) {
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_port = htons(port);
    inet_pton(AF_INET, address, &name.sin_addr);
    return name;
  }

private:
  device::Fd socket_{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
};

uint16_t bound_port(const device::Fd &unbound) {
  sockaddr_in name = Client::named("0.0.0.0", 0);
  socklen_t length = sizeof name;
  EXPECT_EQ(bind(unbound.get(), reinterpret_cast<sockaddr *>(&name), length), 0);
  getsockname(unbound.get(), reinterpret_cast<sockaddr *>(&name), &length);
  return ntohs(name.sin_port);
}
uint16_t free_port() {
  return bound_port(device::Fd(socket(AF_INET, SOCK_DGRAM, 0)));
}

uint32_t field(const std::string &packet, std::size_t number) {
  uint32_t value = 0;
  std::memcpy(&value, packet.data() + 4 * number, sizeof value);
  return ntohl(value);
}

bool counts(const std::string &packets, const std::string &bytes) {
  return eventually([&] {
    return got(getTR069UDPEchoConfigPacketsReceived) == packets &&
           got(getTR069UDPEchoConfigPacketsResponded) == packets &&
           got(getTR069UDPEchoConfigBytesReceived) == bytes &&
           got(getTR069UDPEchoConfigBytesResponded) == bytes;
  });
}

class Echo : public Agent, public ::testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(Instances, Echo, ::testing::Values(false, true),
                         [](const auto &instance) { return instance.param ? "Secondary" : "Primary"; });

TEST_P(Echo, AnswersAndCounts) {
  as_agent(GetParam(), [&] {
    const uint16_t port = free_port();
    request({SETTING(UDPEchoConfigUDPPort, std::to_string(port)),
             SETTING(UDPEchoConfigSourceIPAddress, "127.0.0.1"), SETTING(UDPEchoConfigInterface, "lo"),
             SETTING(UDPEchoConfigEnable, "1")});
    const Client client, stranger("127.0.0.2");
    const std::string packet(100, 'p');
    EXPECT_EQ(client.ask_until_up(packet, port), packet);
    EXPECT_EQ(client.ask("", port), "");
    EXPECT_EQ(client.ask(packet, port, "127.0.0.3"), packet); // answered from the address that was asked
    EXPECT_EQ(stranger.ask(packet, port, "127.0.0.1", {0, 200'000}), std::nullopt);
    EXPECT_TRUE(counts("3", "200")) << got(getTR069UDPEchoConfigPacketsReceived);
    EXPECT_LT(got(getTR069UDPEchoConfigTimeFirstPacketReceived),
              got(getTR069UDPEchoConfigTimeLastPacketReceived));
    EXPECT_EQ(got(getTR069UDPEchoConfigEchoPlusSupported), "1");

    // A change starts it anew, with its counts; now with the fields of echo-plus.
    request({SETTING(UDPEchoConfigEchoPlusEnabled, "1"), SETTING(UDPEchoConfigEnable, "1")});
    EXPECT_TRUE(comes_into_log(tool("udpechoplus_server") + " ended"));
    EXPECT_TRUE(counts("0", "0"));
    std::string plus = client.ask_until_up(std::string(24, '\x11'), port);
    EXPECT_TRUE(field(plus, 0) == 0x11111111 && field(plus, 1) == 1 && field(plus, 4) == 0 &&
                field(plus, 5) == 0x11111111);
    EXPECT_LE(field(plus, 3) - field(plus, 2), 0x7FFFFFFFU) << "answered before it came";
    plus = client.ask(std::string(20, '\x22'), port).value();
    EXPECT_TRUE(field(plus, 0) == 0x22222222 && field(plus, 1) == 2);
    EXPECT_EQ(client.ask(std::string(19, 's'), port), std::string(19, 's')); // too short for the fields

    // Stopped by any change that does not enable; the counts stay.
    request({SETTING(UDPEchoConfigEnable, "0")});
    EXPECT_TRUE(eventually([&] { return is_gone(runs_of(tool("udpechoplus_server")).back()); }));
    EXPECT_EQ(client.ask(packet, port), std::nullopt);
    EXPECT_TRUE(counts("3", "63"));
    const fs::path root = device_.directory() / "root/tmp";
    EXPECT_EQ(fs::file_size(root / tool("udpEchoServerStatistics")), 152U);
    EXPECT_NE(fs::exists(root / "udpEchoServerStatistics"), fs::exists(root / "sec_udpEchoServerStatistics"));
  });
}

TEST_F(Agent, AnEchoServerThatCannotListenSaysWhy) {
  as_agent(false, [&] {
    const device::Fd taken(socket(AF_INET, SOCK_DGRAM, 0));
    const std::string port = std::to_string(bound_port(taken));
    request({SETTING(UDPEchoConfigUDPPort, port), SETTING(UDPEchoConfigEnable, "1")});
    EXPECT_TRUE(
        comes_into_log("udpechoplus_server: cannot listen on port " + port + ": Address already in use"));
    EXPECT_TRUE(comes_into_log("udpechoplus_server ended with status 1"));
    request({SETTING(UDPEchoConfigInterface, "no_such_if"), SETTING(UDPEchoConfigEnable, "1")});
    EXPECT_TRUE(comes_into_log("udpechoplus_server: there is no interface"));
  });
}

} // namespace
} // namespace kova::test
