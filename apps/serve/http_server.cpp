// http_server.cpp - serves HTTP on an address of this machine
#include "apps/serve/http_server.h"

#include "apps/common/command_failure.h"
#include "apps/common/json_text.h"
#include "apps/serve/http_connection.h"
#include "apps/serve/request_rate.h"
#include "platform/condition.h"
#include "platform/mutex.h"
#include "platform/tcp_socket.h"
#include "platform/thread.h"

#include <httplib.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <deque>
#include <exception>
#include <list>
#include <utility>

namespace {

/// A connection that was accepted: what has to be known to end it from outside.
struct OpenConnection {
    HttpConnection* connection = nullptr;
    bool isWaiting = true; // for the head of a request
    bool isEnding = false; // to make room
};

/// Gives the library the head of a request that was read and checked before, with nothing of it but
/// the method and whether the connection ends, and sends its answer.
class CheckedRequest final : public httplib::Stream {
public:
    CheckedRequest(HttpConnection& openConnection, const HttpHead& head)
        : connection(openConnection),
          text(head.method + " / HTTP/1.1\r\n" + (head.isLast ? "Connection: close\r\n" : "") +
               "\r\n") {}

    bool is_readable() const override { return position < text.size(); }
    bool is_writable() const override { return !isBroken; }
    ssize_t read(char* data, std::size_t size) override {
        const std::size_t count = std::min(size, text.size() - position);
        std::memcpy(data, text.data() + position, count);
        position += count;
        return static_cast<ssize_t>(count);
    }
    ssize_t write(const char* data, std::size_t size) override {
        // The library writes the head of the answer before its body: sent together, a small answer
        // is one packet.
        if (isBroken || !connection.Send(data, size)) {
            isBroken = true;
            return -1;
        }
        return static_cast<ssize_t>(size);
    }
    void get_remote_ip_and_port(std::string& ip, int& port) const override {
        ip.clear();
        port = 0;
    }
    void get_local_ip_and_port(std::string& ip, int& port) const override {
        ip.clear();
        port = 0;
    }
    socket_t socket() const override { return 0; }
    bool IsBroken() const { return isBroken; }

private:
    HttpConnection& connection;
    const std::string text;
    std::size_t position = 0;
    bool isBroken = false;
};

/// The answer that the library is about to send on this thread.
thread_local HttpAnswer* preparedAnswer = nullptr;
thread_local HttpConnection* preparedConnection = nullptr;

/// Set on the accepting thread while it refuses a connection.
thread_local bool isRefusing = false;

bool IsEndless(const HttpAnswer& answer) {
    return answer.stream && answer.streamBytes == 0;
}

void PutAnswer(HttpAnswer& answer, HttpConnection& connection, httplib::Response& response) {
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) {
        response.set_header(name, value);
    }
    if (!answer.stream) {
        response.set_content(std::move(answer.body), answer.type);
        return;
    }
    const bool isEndless = IsEndless(answer);
    const std::shared_ptr<IHttpStream> stream = std::move(answer.stream);
    const auto send = [stream, isEndless, &connection](httplib::DataSink& sink) {
        bool isSent = false;
        bool isFine = true;
        const bool goesOn = stream->SendNext([&](const void* data, std::size_t size) {
            isSent = true;
            isFine = isFine && sink.write(static_cast<const char*>(data), size);
            return isFine;
        });
        if (!goesOn && isEndless) {
            sink.done(); // which the library sets only where it counts
        }
        // Who waits for nothing is not noticed by sending.
        return isFine && (isSent || !connection.HasEnded());
    };
    if (answer.streamBytes != 0) {
        response.set_content_provider(
            static_cast<std::size_t>(answer.streamBytes), answer.type,
            [send](std::size_t, std::size_t, httplib::DataSink& sink) { return send(sink); });
    } else {
        response.set_content_provider(
            answer.type, [send](std::size_t, httplib::DataSink& sink) { return send(sink); });
    }
}

/// What the library calls for each connection: runs in turn on threads, one for each at a time.
using ConnectionTask = std::function<void()>;

} // namespace

class HttpServer::Impl {
public:
    Impl(IHttpHandler& requestHandler, const HttpLimits& connectionLimits)
        : handler(requestHandler),
          limits(connectionLimits),
          rate(connectionLimits.requestsPerSecond),
          engine(*this) {
        engine.new_task_queue = [this] {
            return new TaskQueue(*this);
        };
        engine.set_pre_routing_handler([](const httplib::Request&, httplib::Response& response) {
            PutAnswer(*preparedAnswer, *preparedConnection, response);
            return httplib::Server::HandlerResponse::Handled;
        });
        engine.set_keep_alive_max_count(1000);
        engine.set_keep_alive_timeout(static_cast<time_t>(limits.idleMs / 1000));
        engine.set_idle_interval(0, 100000); // how often the library looks whether it is to end
    }

    void Listen(std::uint32_t address, std::uint16_t port) {
        std::string error;
        const platform::TcpHandle handle = platform::ListenTcp(address, port, error);
        if (handle == platform::kNoTcpHandle) {
            throw CommandFailure("cannot listen at port " + std::to_string(port) + ": " + error);
        }
        listenedPort = platform::TcpPort(handle);
        engine.Take(handle);
    }

    std::uint16_t Port() const { return listenedPort; }

    void Start() {
        const auto accept = [](void* self) {
            static_cast<Impl*>(self)->engine.listen_after_bind();
        };
        for (const auto& [name, value] : handler.CommonHeaders()) {
            commonHeaders.emplace(name, value);
        }
        engine.set_default_headers(commonHeaders);
        accepting = platform::Thread::Start(accept, this, 0);
        if (!accepting.IsJoinable()) {
            throw CommandFailure("cannot start a thread for connections");
        }
    }

    void Stop() {
        if (!accepting.IsJoinable()) {
            return;
        }
        isEnding = true;
        // The library does not stop before it has begun.
        while (!engine.is_running() && !hasAccepted) {
            platform::MutexLock lock(mutex);
            work.WaitFor(mutex, 1);
        }
        engine.stop();
        EndAll();
        accepting.Join();
    }

    HttpCounts Counts() const {
        const platform::MutexLock lock(mutex);
        HttpCounts counts;
        counts.connections = open.size();
        counts.requests = requests;
        counts.refused = refused;
        return counts;
    }

private:
    /// The library's server, of which the sockets and the reading of requests are replaced.
    class Engine final : public httplib::Server {
    public:
        explicit Engine(Impl& ownerOfEngine) : owner(ownerOfEngine) {}
        void Take(platform::TcpHandle handle) { svr_sock_ = static_cast<socket_t>(handle); }
        bool Answer(CheckedRequest& request, bool isLast) {
            bool isClosed = false;
            const bool isDone = process_request(request, isLast, isClosed, nullptr);
            return isDone && !isClosed && !isLast && !request.IsBroken();
        }

    private:
        bool process_and_close_socket(socket_t socket) override {
            owner.Serve(static_cast<platform::TcpHandle>(socket));
            return true;
        }

        Impl& owner;
    };

    /// Threads that are made as connections come, up to the limit.
    class TaskQueue final : public httplib::TaskQueue {
    public:
        explicit TaskQueue(Impl& ownerOfQueue) : owner(ownerOfQueue) { owner.hasAccepted = true; }
        void enqueue(std::function<void()> task) override { owner.Enqueue(std::move(task)); }
        void shutdown() override { owner.EndThreads(); }

    private:
        Impl& owner;
    };

    using OpenConnections = std::list<OpenConnection>;

    /// A connection among the open ones.
    class Listed {
    public:
        Listed(Impl& listOwner, HttpConnection& connection) : owner(listOwner) {
            const platform::MutexLock lock(owner.mutex);
            position = owner.open.insert(owner.open.end(), {&connection});
        }
        ~Listed() {
            const platform::MutexLock lock(owner.mutex);
            owner.ending -= position->isEnding ? 1 : 0;
            owner.open.erase(position);
        }
        Listed(const Listed&) = delete;
        Listed& operator=(const Listed&) = delete;

        OpenConnections::iterator Position() const { return position; }

    private:
        Impl& owner;
        OpenConnections::iterator position;
    };

    void Enqueue(ConnectionTask task) {
        bool isTaken = false;
        {
            const platform::MutexLock lock(mutex);
            const bool hasRoom = accepted - ending < limits.connections || EndLongestWaiting();
            isTaken = hasRoom && HasThread();
            if (isTaken) {
                ++accepted;
                tasks.push_back(std::move(task));
            } else {
                ++refused;
            }
        }
        if (isTaken) {
            work.NotifyOne();
            return;
        }
        isRefusing = true;
        task();
        isRefusing = false;
    }

    bool HasThread() REQUIRES(mutex) {
        if (idleThreads > tasks.size() || threads.size() >= limits.connections) {
            return true;
        }
        const auto run = [](void* self) {
            static_cast<Impl*>(self)->RunTasks();
        };
        platform::Thread thread = platform::Thread::Start(run, this, 0);
        if (thread.IsJoinable()) {
            threads.push_back(std::move(thread));
        }
        return !threads.empty();
    }

    void RunTasks() {
        for (;;) {
            ConnectionTask task;
            {
                const platform::MutexLock lock(mutex);
                ++idleThreads;
                while (tasks.empty() && !areThreadsEnding) {
                    work.Wait(mutex);
                }
                --idleThreads;
                if (tasks.empty()) {
                    return;
                }
                task = std::move(tasks.front());
                tasks.pop_front();
            }
            task();
            const platform::MutexLock lock(mutex);
            --accepted;
        }
    }

    void EndThreads() {
        std::vector<platform::Thread> joined;
        {
            const platform::MutexLock lock(mutex);
            areThreadsEnding = true;
            joined.swap(threads);
        }
        work.NotifyAll();
        EndAll();
        joined.clear();
    }

    /// The one that came first is the one that waits longest.
    bool EndLongestWaiting() REQUIRES(mutex) {
        const auto found = std::find_if(
            open.begin(), open.end(), [](const OpenConnection& entry) { return entry.isWaiting; });
        if (found == open.end()) {
            return false;
        }
        found->isWaiting = false;
        found->isEnding = true;
        ++ending;
        found->connection->End();
        return true;
    }

    void EndAll() {
        const platform::MutexLock lock(mutex);
        for (const OpenConnection& entry : open) {
            entry.connection->End();
        }
    }

    void Serve(platform::TcpHandle handle) noexcept {
        try {
            HttpConnection connection(handle, limits);
            if (isRefusing) {
                static const HttpAnswer kBusy =
                    ErrorAnswer(503, "all connections are in use; try again later");
                connection.Refuse(kBusy);
                return;
            }
            const Listed entry(*this, connection);
            ServeRequests(connection, entry.Position());
        } catch (const std::exception&) {
            return; // memory ran out, or an answer failed in the midst: this connection ends
        }
    }

    void ServeRequests(HttpConnection& connection, OpenConnections::iterator entry) {
        HttpRequest request;
        HttpRefusal refusal;
        while (!isEnding) {
            Await(entry);
            const HeadWait waited = connection.AwaitHead(request.head, refusal);
            if (!IsToServe(entry) || waited == HeadWait::kEnded) {
                return;
            }
            if (waited == HeadWait::kRefused) {
                connection.SendAndEnd(ErrorAnswer(refusal.status, refusal.reason));
                return;
            }
            if (!ServeRequest(connection, request)) {
                return;
            }
        }
    }

    void Await(OpenConnections::iterator entry) {
        const platform::MutexLock lock(mutex);
        entry->isWaiting = !entry->isEnding;
        open.splice(open.end(), open, entry);
    }

    /// False when the connection has made room for another one.
    bool IsToServe(OpenConnections::iterator entry) {
        const platform::MutexLock lock(mutex);
        ++requests;
        return std::exchange(entry->isWaiting, false);
    }

    bool ServeRequest(HttpConnection& connection, HttpRequest& request) {
        std::optional<HttpAnswer> answer;
        if (!rate.Take()) {
            answer = ErrorAnswer(429, "too many requests at a time; try again in a second");
            answer->headers.emplace_back("Retry-After", "1");
        } else {
            answer = RefusalOf(request.head);
        }
        request.body.clear();
        if (answer && request.head.contentLength != 0) {
            connection.SendAndEnd(*answer); // and the body is not read
            return false;
        }
        if (!answer) {
            if (!connection.ReadBody(request.head.contentLength, request.body)) {
                return false;
            }
            answer = AnswerOf(request);
        }
        // Without a length the end of the connection is the end of the answer.
        const bool isLast = request.head.isLast || isEnding || IsEndless(*answer);
        preparedAnswer = &*answer;
        preparedConnection = &connection;
        CheckedRequest checked(connection, request.head);
        return engine.Answer(checked, isLast);
    }

    std::optional<HttpAnswer> RefusalOf(const HttpHead& head) {
        try {
            return handler.Refuse(head);
        } catch (const std::exception& failure) {
            return ErrorAnswer(500, failure.what());
        }
    }

    HttpAnswer AnswerOf(const HttpRequest& request) {
        try {
            return handler.Handle(request);
        } catch (const std::exception& failure) {
            return ErrorAnswer(500, failure.what());
        }
    }

    IHttpHandler& handler;
    const HttpLimits limits;
    RequestRate rate;
    httplib::Headers commonHeaders;
    std::uint16_t listenedPort = 0;
    std::atomic<bool> isEnding{false};
    std::atomic<bool> hasAccepted{false}; // the library has begun
    Engine engine;

    mutable platform::Mutex mutex;
    platform::Condition work;
    std::deque<ConnectionTask> tasks GUARDED_BY(mutex);
    std::size_t accepted GUARDED_BY(mutex) = 0; // tasks that wait or run
    std::size_t ending GUARDED_BY(mutex) = 0;   // of those that run, to make room
    std::vector<platform::Thread> threads GUARDED_BY(mutex);
    std::size_t idleThreads GUARDED_BY(mutex) = 0;
    bool areThreadsEnding GUARDED_BY(mutex) = false;
    OpenConnections open GUARDED_BY(mutex); // in the order of their last answers
    std::uint64_t requests GUARDED_BY(mutex) = 0;
    std::uint64_t refused GUARDED_BY(mutex) = 0;

    platform::Thread accepting; // last: it uses all other members
};

HttpAnswer ErrorAnswer(int status, const std::string& reason) {
    HttpAnswer answer;
    answer.status = status;
    answer.body = JsonReport({{"error", reason}}).Text() + "\n";
    return answer;
}

HttpAnswer JsonAnswer(std::string json) {
    HttpAnswer answer;
    answer.body = std::move(json) + "\n";
    return answer;
}

HttpServer::HttpServer(IHttpHandler& requestHandler, HttpLimits connectionLimits)
    : impl(std::make_unique<Impl>(requestHandler, connectionLimits)) {}

HttpServer::~HttpServer() {
    Stop();
}

void HttpServer::Listen(std::uint32_t address, std::uint16_t port) {
    impl->Listen(address, port);
}

std::uint16_t HttpServer::Port() const {
    return impl->Port();
}

void HttpServer::Start() {
    impl->Start();
}

void HttpServer::Stop() {
    impl->Stop();
}

HttpCounts HttpServer::Counts() const {
    return impl->Counts();
}
