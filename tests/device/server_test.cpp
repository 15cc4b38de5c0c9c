// The service daemon's protocol and loop against clients that do not behave.
#include "device/fd.hpp"
#include "device/serviced/server.hpp"
#include "src/frame/channel.hpp"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <future>
#include <thread>

namespace kova::device {
namespace {

using namespace std::chrono_literals;

std::string record(uint32_t command, const std::string &payload = "", uint32_t confirm = 0) {
  MsgRecord header{};
  std::memcpy(&header.magic, "MRHD", 4);
  header.sourcePid = 42;
  header.sourceType = channel::agent_type;
  header.destinationType = channel::daemon_type;
  header.command = command;
  header.confirm = confirm;
  header.cookie = 99;
  header.length = static_cast<uint32_t>(payload.size());
  return std::string(reinterpret_cast<const char *>(&header), sizeof header) + payload;
}

std::string oversized() {
  std::string bytes = record(0x10000005);
  const uint32_t length = channel::most_payload + 1;
  std::memcpy(bytes.data() + offsetof(MsgRecord, length), &length, sizeof length);
  return bytes;
}

// The daemon's loop in a thread, with limits that a test can reach.
class ServerTest : public ::testing::Test {
protected:
  void SetUp() override {
    directory_ = (std::filesystem::temp_directory_path() / "kova-device-test-XXXXXX").string();
    ASSERT_NE(mkdtemp(directory_.data()), nullptr);
    address_.sun_family = AF_UNIX;
    std::snprintf(address_.sun_path, sizeof address_.sun_path, "%s/socket", directory_.c_str());
    Server::Handlers handlers{
        [this](const Request &request) {
          requests_++;
          return request.command == 0x10000005 ? 5U : 0U;
        },
        [this](pid_t client, const std::string &) { malformed_ += client == getpid(); }};
    std::promise<uv_async_t *> started;
    loop_ = std::thread([this, handlers, &started] {
      Loop loop;
      const Owned<uv_async_t> stop(new uv_async_t{});
      uv_async_init(loop, stop.get(), [](uv_async_t *sent) { uv_stop(sent->loop); });
      const Server server(loop, address_.sun_path, handlers,
                          {.connections = 4, .turn = 200ms, .record_time = 60ms});
      started.set_value(stop.get());
      loop.run();
    });
    stop_ = started.get_future().get();
  }
  void TearDown() override {
    uv_async_send(stop_);
    loop_.join();
    std::filesystem::remove_all(directory_);
  }

  Fd connected() const {
    Fd client(socket(AF_UNIX, SOCK_STREAM, 0));
    timeval patience{10, 0};
    setsockopt(client.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    EXPECT_EQ(connect(client.get(), reinterpret_cast<const sockaddr *>(&address_), sizeof address_), 0);
    return client;
  }
  static void send_bytes(const Fd &client, const std::string &bytes) {
    EXPECT_EQ(send(client.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
              static_cast<ssize_t>(bytes.size()));
  }
  static bool closed_by_server(const Fd &client) {
    char byte = 0;
    const ssize_t count = recv(client.get(), &byte, 1, 0);
    return count == 0 || (count < 0 && errno == ECONNRESET);
  }
  // Confirmed, so everything sent earlier on the connection has been handled too.
  static uint32_t confirmed(const Fd &client) {
    send_bytes(client, record(0x10000005, "", 1));
    MsgRecord reply{};
    EXPECT_EQ(recv(client.get(), &reply, sizeof reply, MSG_WAITALL), static_cast<ssize_t>(sizeof reply));
    EXPECT_TRUE(reply.command == channel::confirmation && reply.cookie == 99 &&
                reply.destinationType == channel::agent_type);
    return reply.wordData;
  }

  std::string directory_;
  sockaddr_un address_{};
  uv_async_t *stop_ = nullptr;
  std::atomic<int> requests_ = 0, malformed_ = 0;
  std::thread loop_;
};

TEST_F(ServerTest, RefusesWhatIsNoRecordAndServesTheNextClient) {
  const std::string half = record(0x10000008, "ping").substr(0, 38);
  for (const std::string &bytes : {std::string("GET / HTTP/1.0\r\n\r\n"), std::string("x"), oversized(), half,
                                   record(0x10000006) + "garbage"}) {
    const Fd client = connected();
    const int before = malformed_;
    send_bytes(client, bytes);
    EXPECT_TRUE(closed_by_server(client)); // the half record once its time is up
    EXPECT_EQ(malformed_, before + 1);
    EXPECT_EQ(confirmed(connected()), 5U);
  }
  EXPECT_EQ(requests_, 6); // the confirmed ones, and the whole record ahead of the garbage
}

TEST_F(ServerTest, ClientsThatNeverCloseMakeRoomForOthers) {
  std::vector<Fd> silent;
  for (int i = 0; i < 4; i++) {
    silent.push_back(connected());
    EXPECT_EQ(confirmed(silent.back()), 5U);
  }
  const Fd late = connected();
  send_bytes(late, record(0x10000008, std::string(channel::most_payload, 'x')));
  EXPECT_EQ(confirmed(late), 5U);
  EXPECT_TRUE(closed_by_server(silent[0]));
  EXPECT_EQ(confirmed(silent[3]), 5U);
  EXPECT_EQ(malformed_, 0);
}

TEST_F(ServerTest, ClientsThatNeverStopTalkingMakeRoomToo) {
  std::atomic<bool> done = false;
  std::vector<std::thread> talkers(4);
  for (std::thread &talker : talkers)
    talker = std::thread([&] {
      while (!done) {
        const Fd client = connected();
        const std::string request = record(0x10000006);
        while (!done && send(client.get(), request.data(), request.size(), MSG_NOSIGNAL) > 0)
          std::this_thread::sleep_for(1ms);
      }
    });
  while (requests_ < 100)
    std::this_thread::sleep_for(1ms);
  bool served = false; // on a busy machine it may be slow to speak itself, and has to come again
  for (int attempt = 0; attempt < 5 && !served; attempt++) {
    const Fd client = connected();
    const std::string request = record(0x10000005, "", 1);
    MsgRecord reply{};
    served = send(client.get(), request.data(), request.size(), MSG_NOSIGNAL) > 0 &&
             recv(client.get(), &reply, sizeof reply, MSG_WAITALL) == sizeof reply;
  }
  EXPECT_TRUE(served);
  done = true;
  for (std::thread &talker : talkers)
    talker.join();
}

TEST_F(ServerTest, LosesNoneOfThousandsOfShortConnections) {
  constexpr int clients = 4, each = 500;
  std::vector<std::thread> threads(clients);
  for (std::thread &thread : threads)
    thread = std::thread([this] {
      for (int n = 0; n < each; n++)
        send_bytes(connected(), record(channel::connect_announcement) + record(0x10000006));
    });
  for (std::thread &thread : threads)
    thread.join();
  for (int i = 0; i < 6000 && requests_ < 2 * clients * each; i++)
    std::this_thread::sleep_for(10ms);
  EXPECT_EQ(requests_, 2 * clients * each);
  EXPECT_EQ(malformed_, 0);
}

} // namespace
} // namespace kova::device
