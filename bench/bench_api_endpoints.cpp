// The local API's endpoints on a 10,000-shape pattern document, through the
// real server and the hand-over to the controller's main thread: GET /paths
// whole, POST /shapes/line with its crossings and the end of the change,
// and GET /doc requests a second over kept-alive connections.
#include <benchmark/benchmark.h>
#include <httplib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <thread>
#include <time.h>

#include "api/query_endpoints.h"
#include "app/frm_pelw.h"
#include "pattern_document.h"
#include "geometry/collect_intersections.h"

namespace {

constexpr int kShapes = 10000;

// A controller on a main thread of its own that does nothing but serve the
// API, with a pattern document and its crossings.
struct TServedDocument {
  std::string dir;
  std::atomic<bool> stop{false};
  std::thread mainThread;
  TfrmPelw* form = nullptr;
  int port = 0;

  TServedDocument() {
    char tmpl[] = "/tmp/pelwright_bench_XXXXXX";
    dir = mkdtemp(tmpl);
    std::ofstream(dir + "/pw_options.ini") << "[MCP]\nEnableServer=1\n";
    std::promise<void> ready;
    mainThread = std::thread([this, &ready] {
      TfrmPelw f;
      f.FAppDataPath = dir;
      f.FApiPort = 0;  // any free port
      f.FormCreate({});
      bench_doc::fill(*f.PathList, kShapes);
      collectIntersectionsFrom(*f.PathList, *f.FIntersections, 0);
      f.pboxResize(1600, 1000);
      form = &f;
      port = f.FMCPServer->boundPort();
      ready.set_value();
      while (!stop) f.mainThreadCalls().waitAndDrain(5);
      f.FormDestroy();
    });
    ready.get_future().wait();
  }
  ~TServedDocument() {
    stop = true;
    mainThread.join();
    std::filesystem::remove_all(dir);
  }
  std::unique_ptr<httplib::Client> client() const {
    auto c = std::make_unique<httplib::Client>("127.0.0.1", port);
    c->set_keep_alive(true);
    c->set_tcp_nodelay(true);
    c->set_read_timeout(60, 0);
    return c;
  }
};

TServedDocument& served() {
  static TServedDocument s;
  return s;
}

double median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

// The client keeps one buffer for the reply, as a client that reads large
// replies would; the figure is then the server's.
void BM_ApiGetPaths(benchmark::State& state) {
  auto cli = served().client();
  std::string body;
  body.reserve(64u << 20);
  size_t bytes = 0;
  for (auto _ : state) {
    body.clear();
    auto r = cli->Get("/paths", [&body](const char* data, size_t n) {
      body.append(data, n);
      return true;
    });
    if (!r || r->status != 200) state.SkipWithError("no reply");
    else bytes = body.size();
  }
  state.counters["reply_MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_ApiGetPaths)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

// GET /paths with a plain socket that reads a megabyte at a time: the
// library client above reads four kilobytes a call, which on this machine
// costs a good part of the round trip by itself.
class TRawHttpClient {
 public:
  explicit TRawHttpClient(int port) {
    FSock = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<uint16_t>(port));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int one = 1;
    setsockopt(FSock, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
    if (connect(FSock, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0) FSock = -1;
    FBuf.resize(1 << 20);
  }
  ~TRawHttpClient() {
    if (FSock >= 0) close(FSock);
  }
  // The body's length, or -1.
  long get(const std::string& path) {
    if (FSock < 0) return -1;
    const std::string req = "GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
    if (send(FSock, req.data(), req.size(), 0) != static_cast<ssize_t>(req.size())) return -1;
    std::string head;
    long length = -1, got = 0;
    while (true) {
      const ssize_t n = recv(FSock, FBuf.data(), FBuf.size(), 0);
      if (n <= 0) return -1;
      if (length < 0) {
        head.append(FBuf.data(), static_cast<size_t>(n));
        const size_t end = head.find("\r\n\r\n");
        if (end == std::string::npos) continue;
        const size_t cl = head.find("Content-Length: ");
        if (cl == std::string::npos) return -1;
        length = std::atol(head.c_str() + cl + 16);
        got = static_cast<long>(head.size() - end - 4);
      } else {
        got += n;
      }
      if (got >= length) return length;
    }
  }

 private:
  int FSock = -1;
  std::vector<char> FBuf;
};

void BM_ApiGetPathsRawClient(benchmark::State& state) {
  TRawHttpClient cli(served().port);
  long bytes = 0;
  for (auto _ : state) {
    bytes = cli.get("/paths");
    if (bytes < 0) state.SkipWithError("no reply");
  }
  state.counters["reply_MB"] = double(bytes) / 1e6;
}
BENCHMARK(BM_ApiGetPathsRawClient)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

// A line across a piece: crossings found, the change finished, a repaint
// asked for. Each is deleted again outside the timing so that the document
// keeps its size.
void BM_ApiPostLine(benchmark::State& state) {
  auto cli = served().client();
  std::vector<double> ms;
  int i = 0;
  for (auto _ : state) {
    const float x = 30.0f + (i % 20) * 125.0f, y = 20.0f + (i % 20) * 105.0f;
    ++i;
    const std::string body = "{\"x1\":" + std::to_string(x) + ",\"y1\":" + std::to_string(y) +
                             ",\"x2\":" + std::to_string(x + 40) + ",\"y2\":" + std::to_string(y + 30) + "}";
    const auto t0 = std::chrono::steady_clock::now();
    auto r = cli->Post("/shapes/line", body, "application/json");
    const auto t1 = std::chrono::steady_clock::now();
    const double sec = std::chrono::duration<double>(t1 - t0).count();
    state.SetIterationTime(sec);
    ms.push_back(sec * 1e3);
    if (!r || r->status != 200 || r->body.rfind("{\"ok\":true,\"id\":", 0) != 0) {
      state.SkipWithError("line refused");
      break;
    }
    const std::string id = r->body.substr(16, r->body.size() - 17);
    cli->Delete("/shapes/" + id);
  }
  state.counters["median_ms"] = median(ms);
}
BENCHMARK(BM_ApiPostLine)->Unit(benchmark::kMillisecond)->UseManualTime()->MinTime(2.0);

void BM_ApiGetDocKeepAlive(benchmark::State& state) {
  const int clients = static_cast<int>(state.range(0));
  constexpr int kPerClient = 200;
  for (auto _ : state) {
    std::vector<std::future<int>> f;
    for (int c = 0; c < clients; ++c) {
      f.push_back(std::async(std::launch::async, [] {
        auto cli = served().client();
        int ok = 0;
        for (int k = 0; k < kPerClient; ++k) {
          auto r = cli->Get("/doc");
          ok += r && r->status == 200;
        }
        return ok;
      }));
    }
    int ok = 0;
    for (auto& x : f) ok += x.get();
    if (ok != clients * kPerClient) state.SkipWithError("lost replies");
  }
  state.SetItemsProcessed(state.iterations() * clients * kPerClient);
}
BENCHMARK(BM_ApiGetDocKeepAlive)->Arg(1)->Arg(8)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

namespace {
// The reply of GET /paths built on the main thread, without the transport.
void BM_ApiPathsReplyText(benchmark::State& state) {
  TServedDocument& s = served();
  size_t bytes = 0;
  std::vector<double> cpuMs;
  for (auto _ : state) {
    s.form->mainThreadCalls().runSync([&] {
      timespec a{}, b{};
      clock_gettime(CLOCK_THREAD_CPUTIME_ID, &a);
      bytes = apiGetPaths(*s.form).size();
      clock_gettime(CLOCK_THREAD_CPUTIME_ID, &b);
      cpuMs.push_back((b.tv_sec - a.tv_sec) * 1e3 + (b.tv_nsec - a.tv_nsec) / 1e6);
    });
  }
  state.counters["reply_MB"] = double(bytes) / 1e6;
  // Time the main thread itself spent, whatever else the machine runs.
  state.counters["main_thread_cpu_ms"] = median(cpuMs);
}
BENCHMARK(BM_ApiPathsReplyText)->Unit(benchmark::kMillisecond)->UseRealTime();
}  // namespace
