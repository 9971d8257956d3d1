// SPDX-License-Identifier: MIT
// A line of a given length on this computer: takes connections on 127.0.0.1, hands their bytes
// on to a server and its answers back, each byte a given time after it came.
//
// usage: zebx_relay PORT TARGET [--delay MILLISECONDS] [--counts FILE]
//
// PORT    0: any free one.  The port is printed, with a line end, once connections are taken.
// TARGET  ADDRESS:PORT of IPv4, or the path of a Unix socket.
// --delay of each way; a round trip costs twice that, and so does connecting.
// --counts  the file that is written, whole, at each SIGUSR1 and at the end: connections so far
//           and bytes that came from each side, as JSON.
// SIGUSR2 stops it: connections are still taken, by the system, and nothing is handed on, as from
// a server that hangs; the next SIGUSR2 goes on.  SIGTERM and SIGINT end it.
//
// Only time passes on this line: as much as fits in 64 MiB a connection and way is under way at
// once, so that a single stream loses no rate to the length.
#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iostream>
#include <list>
#include <memory>
#include <netinet/tcp.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostUnderWay = 64 << 20;
constexpr std::size_t kMostAtOnce = 256 << 10;

void Require(bool isSo, const std::string& what) {
    if (!isSo)
        throw std::runtime_error(what + ": " + std::strerror(errno));
}

class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { close(m_number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return m_number; }

private:
    int m_number;
};

bool MustWait() {
    return errno == EAGAIN || errno == EINPROGRESS || errno == EINTR;
}

// Where connections come from or lead to.
struct Endpoint {
    sockaddr_storage address{};
    socklen_t size = 0;

    static Endpoint Of(const std::string& target) {
        if (target.starts_with('/'))
            return UnixSocket(target);
        const auto colon = target.rfind(':');
        if (colon == std::string::npos)
            throw std::runtime_error("neither ADDRESS:PORT nor a path: " + target);
        return Inet(target.substr(0, colon), std::atoi(target.c_str() + colon + 1));
    }

    static Endpoint Inet(const std::string& address, int port) {
        Endpoint endpoint;
        auto& inet = reinterpret_cast<sockaddr_in&>(endpoint.address);
        inet.sin_family = AF_INET;
        inet.sin_port = htons(static_cast<std::uint16_t>(port));
        Require(inet_pton(AF_INET, address.c_str(), &inet.sin_addr) == 1, address);
        endpoint.size = sizeof inet;
        return endpoint;
    }

    int Socket() const { return socket(address.ss_family, SOCK_STREAM | SOCK_NONBLOCK, 0); }
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&address); }

private:
    static Endpoint UnixSocket(const std::string& path) {
        Endpoint endpoint;
        auto& local = reinterpret_cast<sockaddr_un&>(endpoint.address);
        if (path.size() >= sizeof local.sun_path)
            throw std::runtime_error("too long for a socket: " + path);
        local.sun_family = AF_UNIX;
        path.copy(local.sun_path, path.size());
        endpoint.size = sizeof local;
        return endpoint;
    }
};

// One way of a connection.
class Way {
public:
    Way(int from, int to, Clock::duration delay, std::uint64_t& bytes)
        : m_from(from), m_to(to), m_delay(delay), m_bytes(bytes) {}

    bool WantsToRead() const { return !m_hasEnded && m_underWay < kMostUnderWay; }
    bool WantsToWrite(Clock::time_point now) const {
        return !m_chunks.empty() && m_chunks.front().due <= now;
    }
    // When there is next something to write.
    std::optional<Clock::time_point> Due() const {
        return m_chunks.empty() ? std::nullopt : std::optional(m_chunks.front().due);
    }
    bool IsOver() const { return m_hasEnded && m_chunks.empty(); }

    // Both: false when the connection broke.
    bool Read(Clock::time_point now) {
        static std::vector<char> buffer(kMostAtOnce);
        const ssize_t count = read(m_from, buffer.data(), buffer.size());
        if (count < 0)
            return MustWait();
        m_hasEnded = count == 0;
        m_bytes += static_cast<std::uint64_t>(count);
        m_underWay += static_cast<std::size_t>(count);
        m_chunks.push_back({now + m_delay, {buffer.data(), buffer.data() + count}});
        return true;
    }

    bool Write(Clock::time_point now) {
        while (WantsToWrite(now)) {
            const std::vector<char>& bytes = m_chunks.front().bytes;
            if (bytes.empty()) {
                shutdown(m_to, SHUT_WR);
            } else if (!WriteSome(bytes)) {
                return MustWait();
            } else if (m_written < bytes.size()) {
                return true;
            }
            m_underWay -= bytes.size();
            m_written = 0;
            m_chunks.pop_front();
        }
        return true;
    }

private:
    struct Chunk {
        Clock::time_point due;
        std::vector<char> bytes; // none: the end
    };

    bool WriteSome(const std::vector<char>& bytes) {
        const ssize_t count =
            send(m_to, bytes.data() + m_written, bytes.size() - m_written, MSG_NOSIGNAL);
        m_written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
        return count >= 0;
    }

    int m_from;
    int m_to;
    Clock::duration m_delay;
    std::uint64_t& m_bytes;
    bool m_hasEnded = false;
    std::deque<Chunk> m_chunks;
    std::size_t m_underWay = 0;
    std::size_t m_written = 0; // of the first chunk
};

struct Counts {
    std::uint64_t connections = 0;
    std::uint64_t toServer = 0;
    std::uint64_t fromServer = 0;
};

class Connection {
public:
    Connection(int client, int server, Clock::duration delay, Counts& counts)
        : m_client(client), m_server(server), m_opens(Clock::now() + 2 * delay),
          m_there(client, server, delay, counts.toServer),
          m_back(server, client, delay, counts.fromServer) {}

    // The system has told the client at once that it is connected; it would have known, and could
    // have sent its first byte, a round trip later.
    bool IsOpen(Clock::time_point now) const { return m_opens <= now; }
    Clock::time_point Opens() const { return m_opens; }

    pollfd ClientPoll(Clock::time_point now) const { return Poll(m_client, m_there, m_back, now); }
    pollfd ServerPoll(Clock::time_point now) const { return Poll(m_server, m_back, m_there, now); }

    // The earliest time at which something can be written that can't now.
    void Advance(Clock::time_point& next, Clock::time_point now) const {
        for (const Way* way : {&m_there, &m_back})
            if (const auto due = way->Due(); due && *due > now)
                next = std::min(next, *due);
    }

    // False when it is over.
    bool HandOn(short client, short server, Clock::time_point now) {
        const bool isWhole = (!(client & (POLLIN | POLLHUP | POLLERR)) || !m_there.WantsToRead() ||
                              m_there.Read(now)) &&
                             (!(server & (POLLIN | POLLHUP | POLLERR)) || !m_back.WantsToRead() ||
                              m_back.Read(now)) &&
                             m_there.Write(now) && m_back.Write(now);
        return isWhole && !(m_there.IsOver() && m_back.IsOver());
    }

private:
    static pollfd Poll(const Descriptor& descriptor, const Way& from, const Way& to,
                       Clock::time_point now) {
        const int events = (from.WantsToRead() ? POLLIN : 0) | (to.WantsToWrite(now) ? POLLOUT : 0);
        // Left out when there is nothing to do, or an end that was read would wake us for ever.
        return {events ? descriptor.Number() : -1, static_cast<short>(events), 0};
    }

    Descriptor m_client;
    Descriptor m_server;
    Clock::time_point m_opens;
    Way m_there;
    Way m_back;
};

struct Options {
    int port = 0;
    std::string target;
    std::chrono::milliseconds delay{0};
    std::string countsFile;
};

class Relay {
public:
    explicit Relay(const Options& options)
        : m_options(options), m_target(Endpoint::Of(options.target)),
          m_listener(Listen(options.port)), m_signals(Signals()) {}

    int Port() const {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        Require(!getsockname(m_listener.Number(), reinterpret_cast<sockaddr*>(&address), &size),
                "the port");
        return ntohs(address.sin_port);
    }

    void Run() {
        while (!m_isOver) {
            const Clock::time_point now = Clock::now();
            std::vector<pollfd> polls{{m_signals.Number(), POLLIN, 0}};
            if (!m_isStopped)
                AddPolls(polls, now);
            Wait(polls, now);
            if (polls[0].revents)
                TakeSignal();
            else if (!m_isStopped)
                HandOn(polls);
        }
        WriteCounts();
    }

private:
    static int Listen(int port) {
        const Endpoint endpoint = Endpoint::Inet("127.0.0.1", port);
        const int listener = endpoint.Socket();
        const int on = 1;
        Require(listener >= 0 && !setsockopt(listener, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) &&
                    !bind(listener, endpoint.Get(), endpoint.size) && !listen(listener, 1024),
                "port " + std::to_string(port));
        return listener;
    }

    static int Signals() {
        sigset_t set;
        sigemptyset(&set);
        for (const int number : {SIGUSR1, SIGUSR2, SIGTERM, SIGINT})
            sigaddset(&set, number);
        sigprocmask(SIG_BLOCK, &set, nullptr);
        return signalfd(-1, &set, SFD_NONBLOCK);
    }

    void AddPolls(std::vector<pollfd>& polls, Clock::time_point now) const {
        polls.push_back({m_listener.Number(), POLLIN, 0});
        for (const auto& connection : m_connections)
            if (connection.IsOpen(now)) {
                polls.push_back(connection.ClientPoll(now));
                polls.push_back(connection.ServerPoll(now));
            }
    }

    void Wait(std::vector<pollfd>& polls, Clock::time_point now) const {
        Clock::time_point next = now + std::chrono::hours(1);
        for (const auto& connection : m_connections)
            if (connection.IsOpen(now))
                connection.Advance(next, now);
            else
                next = std::min(next, connection.Opens());
        const std::chrono::nanoseconds left = next - now;
        const timespec time{left.count() / 1'000'000'000, left.count() % 1'000'000'000};
        if (ppoll(polls.data(), polls.size(), m_isStopped ? nullptr : &time, nullptr) < 0)
            Require(errno == EINTR, "waiting");
    }

    // `polls` in the order of AddPolls; connections that opened meanwhile have none yet.
    void HandOn(const std::vector<pollfd>& polls) {
        const Clock::time_point now = Clock::now();
        auto poll = polls.begin() + 2;
        for (auto at = m_connections.begin(); at != m_connections.end() && poll != polls.end();
             poll += 2) {
            const bool goesOn = at->HandOn(poll[0].revents, poll[1].revents, now);
            at = goesOn ? std::next(at) : m_connections.erase(at);
        }
        if (polls[1].revents)
            Accept();
    }

    void Accept() {
        const int client = accept4(m_listener.Number(), nullptr, nullptr, SOCK_NONBLOCK);
        if (client < 0)
            return;
        ++m_counts.connections;
        const int server = m_target.Socket();
        const int on = 1;
        for (const int number : {client, server}) // a Unix socket knows nothing of it
            setsockopt(number, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        // A server that refuses is noticed at the first byte, and the client then loses its line.
        if (connect(server, m_target.Get(), m_target.size) && !MustWait())
            std::cerr << m_options.target << ": " << std::strerror(errno) << '\n';
        m_connections.emplace_back(client, server, m_options.delay, m_counts);
    }

    void TakeSignal() {
        signalfd_siginfo info{};
        if (read(m_signals.Number(), &info, sizeof info) != sizeof info)
            return;
        if (info.ssi_signo == SIGUSR1)
            WriteCounts();
        else if (info.ssi_signo == SIGUSR2)
            m_isStopped = !m_isStopped;
        else
            m_isOver = true;
    }

    void WriteCounts() const {
        if (m_options.countsFile.empty())
            return;
        const std::string beside = m_options.countsFile + ".new";
        const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(beside.c_str(), "w"),
                                                         std::fclose);
        Require(file != nullptr, beside);
        std::fprintf(file.get(),
                     "{\"connections\": %ju, \"to_server\": %ju, \"from_server\": %ju}\n",
                     static_cast<std::uintmax_t>(m_counts.connections),
                     static_cast<std::uintmax_t>(m_counts.toServer),
                     static_cast<std::uintmax_t>(m_counts.fromServer));
        Require(!std::fflush(file.get()), beside);
        Require(!std::rename(beside.c_str(), m_options.countsFile.c_str()), m_options.countsFile);
    }

    Options m_options;
    Endpoint m_target;
    Descriptor m_listener;
    Descriptor m_signals;
    Counts m_counts;
    std::list<Connection> m_connections; // in the order in which they came
    bool m_isStopped = false;
    bool m_isOver = false;
};

Options Parse(const std::vector<std::string>& words) {
    if (words.size() < 2 || words.size() % 2)
        throw std::runtime_error(
            "usage: zebx_relay PORT TARGET [--delay MILLISECONDS] [--counts FILE]");
    Options options{std::atoi(words[0].c_str()), words[1], {}, {}};
    for (std::size_t i = 2; i < words.size(); i += 2)
        if (words[i] == "--delay")
            options.delay = std::chrono::milliseconds(std::atoi(words[i + 1].c_str()));
        else if (words[i] == "--counts")
            options.countsFile = words[i + 1];
        else
            throw std::runtime_error("unknown: " + words[i]);
    return options;
}

} // namespace

int main(int argc, char** argv) try {
    Relay relay(Parse({argv + 1, argv + argc}));
    std::cout << relay.Port() << std::endl;
    relay.Run();
    return 0;
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
