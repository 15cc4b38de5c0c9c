// The message layer, over a pair of sockets.
#include "fake/fake.hpp"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <climits>
#include <cstring>

using fake::platform;

namespace {

// A record with room for any payload.
struct Record {
  alignas(MsgRecord) unsigned char bytes[36 + 4096];

  Record(uint32_t destination = 1, uint32_t command = 0x10000008, uint32_t length = 0) {
    std::memset(bytes, 'x', sizeof bytes);
    msg_init(get(), destination, command);
    get()->length = length;
  }
  MsgRecord *get() { return reinterpret_cast<MsgRecord *>(bytes); }
  MsgRecord *operator->() { return get(); }
};

class Message : public fake::Test {
protected:
  Message() {
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends_), 0);
    handle.fd = ends_[0];
  }
  ~Message() override {
    hang_up();
    close(ends_[0]);
  }
  // What the peer does.
  void hang_up() { close(std::exchange(ends_[1], -1)); }
  void send_bytes(const void *bytes, std::size_t size) {
    EXPECT_EQ(write(ends_[1], bytes, size), static_cast<ssize_t>(size));
  }
  Record next(ssize_t size) {
    Record record;
    EXPECT_EQ(recv(ends_[1], record.bytes, sizeof record.bytes, MSG_DONTWAIT), size);
    return record;
  }

  MsgHandle handle = {4711, 2, -1}, closed = handle;

private:
  int ends_[2];
};

TEST_F(Message, ConnectingReportsWhatFailed) {
  const std::pair<void (*)(), int> failures[] = {{[] { platform.daemon = false; }, MSG_ERR_NO_DAEMON},
                                                 {[] { platform.sockets = false; }, MSG_ERR_SOCKET},
                                                 {[] { platform.close_on_exec = false; }, MSG_ERR_CLOEXEC},
                                                 {[] { platform.daemon_accepts = false; }, MSG_ERR_CONNECT},
                                                 {[] { platform.whole_sends = 0; }, MSG_ERR_ANNOUNCE}};
  const MsgHandle cleared = {0, 0, -1};
  MsgHandle connection = {1, 1, 1};
  for (const auto &[fail, result] : failures) {
    platform = {};
    fail();
    EXPECT_EQ(msg_handleInit(2, &connection), result);
    EXPECT_EQ(std::memcmp(&connection, &cleared, sizeof cleared), 0) << result;
  }
  EXPECT_EQ(msg_handleInit(2, nullptr), MSG_ERR_ARGUMENT);

  platform.whole_sends = 1;
  EXPECT_EQ(msg_handleInit(2, &connection), 0);
  EXPECT_EQ(connection.pid, static_cast<uint32_t>(getpid()));
  EXPECT_NE(fcntl(connection.fd, F_GETFD) & FD_CLOEXEC, 0);
  EXPECT_EQ(msg_send(&connection, Record().get()), MSG_ERR_SEND); // taken in part only
  msg_handleCleanup(&connection);
  EXPECT_EQ(std::memcmp(&connection, &cleared, sizeof cleared), 0);
  msg_handleCleanup(&closed);
  EXPECT_EQ(closed.pid, 4711U); // a closed handle stays as it is
  msg_handleCleanup(nullptr);
}

TEST_F(Message, RecordsAreBuiltInPlace) {
  Record record(0x01020304, 0x10000005);
  msg_setWordData(record.get(), 99);
  const uint32_t header[] = {0, 0, 0x01020304, 0x10000005, 0, 0, 99, 0};
  EXPECT_EQ(std::memcmp(record.bytes, "MRHD", 4), 0);
  EXPECT_EQ(std::memcmp(record.bytes + 4, header, sizeof header), 0);
  EXPECT_EQ(record.bytes[36], 'x');

  const std::string text(3000, 't');
  for (const uint32_t count : {5U, 2049U}) {
    Record taken;
    msg_setData(taken.get(), text.data(), count);
    EXPECT_EQ(taken->length, std::min(count, 2048U));
    EXPECT_EQ(std::count(taken->payload, taken->payload + 4096, 't'), std::min(count, 2048U));
  }
  msg_setData(record.get(), text.data(), 0);
  msg_setData(record.get(), nullptr, 5);
  EXPECT_EQ(record->length, 0U);
  msg_init(nullptr, 1, 1);
  msg_setWordData(nullptr, 1);
  msg_setData(nullptr, "a", 1);
}

TEST_F(Message, SendKeepsTheCookieAndAsksForNoConfirmation) {
  Record record(1, 7, 4);
  record->confirm = 1;
  record->cookie = 77;
  EXPECT_EQ(msg_send(&handle, record.get()), 0);
  EXPECT_EQ(std::memcmp(next(40).bytes + 36, "xxxx", 4), 0);
  const uint32_t header[] = {4711, 2, 1, 7, 0, 77, 0, 4};
  EXPECT_EQ(std::memcmp(record.bytes + 4, header, sizeof header), 0);

  hang_up();
  for (auto *send : {msg_send, msg_sendComfirm}) {
    EXPECT_EQ(send(nullptr, record.get()), MSG_ERR_ARGUMENT);
    EXPECT_EQ(send(&handle, nullptr), MSG_ERR_ARGUMENT);
    EXPECT_EQ(send(&closed, record.get()), MSG_ERR_CLOSED);
    EXPECT_EQ(send(&handle, record.get()), MSG_ERR_SEND);
  }
}

TEST_F(Message, ConfirmationMustMatchItsRequest) {
  const struct {
    uint32_t command, cookie_offset, word;
    std::size_t size; // of the reply; 0: hangs up instead
    int result;
  } replies[] = {{1, 0, 5, 36, 5},
                 {1, 0, 0xFFFFFFFE, 36, -2},
                 {2, 0, 5, 36, MSG_ERR_WRONG_CONFIRM},
                 {1, 1, 5, 36, MSG_ERR_WRONG_CONFIRM},
                 {1, 0, 5, 24, MSG_ERR_WRONG_CONFIRM}, // without its cookie
                 {1, 0, 5, 28, 0},                     // without its word: it reads as 0
                 {1, 0, 5, 0, MSG_ERR_RECEIVE}};
  for (const auto &reply : replies) {
    SCOPED_TRACE(reply.result);
    platform.wait = [&](int milliseconds) {
      EXPECT_EQ(milliseconds, 10000);
      Record asked = next(36 + 3);
      EXPECT_EQ(asked->confirm, 1U);
      Record answer(99, reply.command); // the destination is not looked at
      answer->cookie = asked->cookie + reply.cookie_offset;
      answer->wordData = reply.word;
      send_bytes(answer.bytes, reply.size);
      if (reply.size == 0) hang_up();
      return 1;
    };
    EXPECT_EQ(msg_sendComfirm(&handle, Record(1, 7, 3).get()), reply.result);
  }
}

TEST_F(Message, WaitingEndsInTime) {
  std::vector<int> waits;
  platform.wait = [&](int milliseconds) {
    waits.push_back(milliseconds);
    return 0;
  };
  Record record;
  EXPECT_EQ(msg_sendComfirm(&handle, record.get()), MSG_ERR_NO_CONFIRM);
  for (const int seconds : {3, 1, 0, -5, INT_MAX})
    EXPECT_EQ(msg_receiveWithTimeout(&handle, record.bytes, 36, seconds), MSG_ERR_TIMEOUT);
  EXPECT_EQ(waits, (std::vector<int>{10000, 3000, 1000, 10000, 10000, INT_MAX}));

  // Signals neither end the wait nor begin it anew.
  waits.clear();
  platform.wait = [&](int milliseconds) {
    waits.push_back(milliseconds);
    usleep(5000);
    errno = EINTR;
    return waits.size() < 3 ? -1 : 0;
  };
  EXPECT_EQ(msg_receiveWithTimeout(&handle, record.bytes, 36, 60), MSG_ERR_TIMEOUT);
  ASSERT_EQ(waits.size(), 3U);
  EXPECT_GT(waits[0], waits[1]);
  EXPECT_GT(waits[1], waits[2]);

  waits.clear();
  platform.wait = [&](int milliseconds) {
    waits.push_back(milliseconds);
    platform.clock_is_readable = false;
    errno = EINTR;
    return waits.size() < 3 ? -1 : 0;
  };
  EXPECT_EQ(msg_receiveWithTimeout(&handle, record.bytes, 36, 1), MSG_ERR_TIMEOUT);
  EXPECT_EQ(waits, (std::vector<int>{1000, 1000, 1000})); // no longer than the first
}

TEST_F(Message, ReceivedRecordsFitTheCallersBuffer) {
  const struct {
    int size;
    uint32_t payload, destination;
    int result;
    std::size_t copied; // into the caller's buffer
    ssize_t left;       // in the socket
  } cases[] = {{36, 0, 2, 36, 36, 0},
               {40, 10, 2, 46, 40, 0},
               {100, 10, 2, 46, 100, 0},
               {5000, 2012, 2, 2048, 2048, 0},
               {2048, 2013, 2, 36, 2048, 2013},
               {2048, 10, 1, MSG_ERR_NOT_FOR_US, 0, 0},
               {35, 0, 2, MSG_ERR_ARGUMENT, 0, 36}};
  for (const auto &[size, payload, destination, result, copied, left] : cases) {
    SCOPED_TRACE(std::to_string(size) + " " + std::to_string(payload));
    const Record sent(destination, 7, payload);
    send_bytes(sent.bytes, 36 + payload);
    std::string buffer(6000, '#');
    EXPECT_EQ(msg_receive(&handle, buffer.data(), size), result);
    std::string expected(sent.bytes, sent.bytes + 36 + (left > 0 ? 0 : payload));
    expected.resize(copied); // zeroed beyond the record
    EXPECT_EQ(buffer, expected + std::string(buffer.size() - copied, '#'));
    EXPECT_EQ(std::max<ssize_t>(recv(handle.fd, buffer.data(), buffer.size(), MSG_DONTWAIT), 0), left);
  }
}

TEST_F(Message, BrokenConnectionsAreTold) {
  Record record(2, 7, 5);
  for (const auto receive : {msg_receive, +[](MsgHandle *from, void *buf, int size) {
                               return msg_receiveWithTimeout(from, buf, size, 1);
                             }}) {
    EXPECT_EQ(receive(nullptr, record.bytes, 36), MSG_ERR_ARGUMENT);
    EXPECT_EQ(receive(&handle, nullptr, 36), MSG_ERR_ARGUMENT);
    EXPECT_EQ(receive(&handle, record.bytes, 0), MSG_ERR_ARGUMENT);
    EXPECT_EQ(receive(&closed, record.bytes, 36), MSG_ERR_CLOSED);
  }
  send_bytes(record.bytes, 13);
  EXPECT_EQ(msg_receiveWithTimeout(&handle, record.bytes, 36, 1), MSG_ERR_SHORT_HEADER);
  send_bytes(Record(2, 7, 5).bytes, 36);
  hang_up();
  for (int times = 0; times < 2; ++times) // before the payload, and before the header
    EXPECT_EQ(msg_receive(&handle, record.bytes, 36), MSG_ERR_PEER_CLOSED);
  MsgHandle no_socket = {1, 2, open("/dev/null", O_RDONLY | O_CLOEXEC)};
  EXPECT_EQ(msg_receive(&no_socket, record.bytes, 36), MSG_ERR_RECEIVE);
  msg_handleCleanup(&no_socket);
}

} // namespace
