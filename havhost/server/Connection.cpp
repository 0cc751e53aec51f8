#include "havhost/server/Connection.h"

#include <chrono>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <boost/asio/bind_executor.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include "havcore/client/FoldedName.h"

#if defined(HAVHOST_TLS)
#include <boost/beast/ssl.hpp>

#include "havhost/server/TUsers.h"
#endif

namespace havhost {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;

using boost::system::error_code;
using hav::client::SameName;
using hav::wbem::THttpReply;
using hav::wbem::THttpRequest;

namespace {

THttpReply PlainReply(unsigned status, const std::string& text) {
  THttpReply reply;
  reply.status = status;
  reply.headers = {{"Content-Type", "text/plain; charset=utf-8"}};
  reply.body = text + '\n';
  return reply;
}

std::string Text(beast::string_view view) { return {view.data(), view.size()}; }

// Whether the name that a client used for this server stands for this machine alone. A browser
// that was lured here under another name says that name.
bool IsLoopbackHost(std::string host) {
  const auto colon = host.rfind(':');
  if (colon != std::string::npos && host.find(']', colon) == std::string::npos) host.resize(colon);
  return SameName(host, "localhost") || host == "[::1]" || host.rfind("127.", 0) == 0;
}

template <class TStream>
class TConnection : public std::enable_shared_from_this<TConnection<TStream>> {
 public:
  TConnection(TStream stream, TServices& services)
      : m_stream(std::move(stream)), m_services(services) {
    ++m_services.connections;
  }
  ~TConnection() { --m_services.connections; }
  TConnection(const TConnection&) = delete;
  TConnection& operator=(const TConnection&) = delete;

  void Start() {
#if defined(HAVHOST_TLS)
    if constexpr (kIsTls) {
      Limit();
      m_stream.async_handshake(asio::ssl::stream_base::server,
                               [self = this->shared_from_this()](error_code failure) {
                                 if (!failure) self->ReadHeader();
                               });
      return;
    }
#endif
    ReadHeader();
  }

 private:
  static constexpr bool kIsTls = !std::is_same_v<TStream, beast::tcp_stream>;
  static constexpr std::chrono::seconds kDrainTime{2};
  using TReplyPtr = std::shared_ptr<THttpReply>;

  // What is begun next has to end in time.
  void Limit() { beast::get_lowest_layer(m_stream).expires_after(m_services.settings.timeout); }

  void ReadHeader() {
    m_parser.emplace();
    m_parser->header_limit(static_cast<std::uint32_t>(m_services.settings.maximumHeader));
    m_parser->body_limit(m_services.settings.maximumRequest);
    Limit();
    http::async_read_header(m_stream, m_buffer, *m_parser,
                            [self = this->shared_from_this()](error_code failure, std::size_t) {
                              if (failure)
                                self->FailRead(failure);
                              else
                                self->CheckHeader();
                            });
  }

  // A client that left, or took too long, is told nothing.
  void FailRead(error_code failure) {
    using TError = http::error;
    if (failure == TError::end_of_stream) return Shut();
    if (failure == TError::body_limit)
      return Refuse(413, "requests are not longer than " +
                             std::to_string(m_services.settings.maximumRequest) + " bytes");
    if (failure == TError::header_limit)
      return Refuse(431, "the header is longer than " +
                             std::to_string(m_services.settings.maximumHeader) + " bytes");
    if (failure.category() == make_error_code(TError::bad_method).category() &&
        failure != TError::partial_message)
      return Refuse(400, "no HTTP request: " + failure.message());
  }

  void CheckHeader() {
    const auto& header = m_parser->get();
    m_isOld = header.version() < 11;
    m_keepAlive = header.keep_alive();
    const auto host = header.find(http::field::host);
    if (host == header.end() ? !m_isOld
                             : m_services.isLoopback && !IsLoopbackHost(Text(host->value())))
      return Refuse(400, "the header Host does not name this server");
    if (!m_services.mayUse) return Route();
    LogIn(Text(header[http::field::authorization]));
  }

  void LogIn(const std::string& authorization) {
    std::string user;
    std::string password;
    if (!ReadCredentials(authorization, user, password)) return Challenge();
    if (m_services.isKnown(user, password)) return Route();
    asio::post(m_services.login, [self = this->shared_from_this(), user, password] {
      const bool granted = self->m_services.mayUse(user, password);
      asio::post(self->m_stream.get_executor(), [self, granted] {
        if (granted)
          self->Route();
        else
          self->Challenge();
      });
    });
  }

  static bool ReadCredentials(const std::string& header, std::string& user, std::string& password) {
#if defined(HAVHOST_TLS)
    return ReadBasic(header, user, password);
#else
    static_cast<void>(header), static_cast<void>(user), static_cast<void>(password);
    return false;
#endif
  }

  // The body that was not read stands between this request and the next.
  void Challenge() {
    auto reply = PlainReply(401, "this server is for its users");
    reply.headers.emplace_back("WWW-Authenticate", "Basic realm=\"havhost\", charset=\"UTF-8\"");
    m_keepAlive = false;
    Write(std::make_shared<THttpReply>(std::move(reply)));
  }

  void Route() {
    const auto& header = m_parser->get();
    const auto method = Text(header.method_string());
    const auto target = Text(header.target());
    const bool isPost = method == "POST" || method == "M-POST";
    if (!isPost && method != "GET") {
      auto reply = PlainReply(405, "the methods are GET, POST and M-POST");
      reply.headers.emplace_back("Allow", "GET, POST, M-POST");
      m_keepAlive = false;
      return Write(std::make_shared<THttpReply>(std::move(reply)));
    }
    if (!isPost && (target != "/" || !m_services.makePage))
      return Refuse(404, "there is no such page");
    if (isPost && target != "/cimom" && target != "/")
      return Refuse(404, "CIM operations are posted to /cimom");
    if (isPost && !m_parser->content_length() && !m_parser->chunked())
      return Refuse(411, "the length of the request is not given");
    if (SameName(Text(header[http::field::expect]), "100-continue")) return Encourage();
    ReadBody();
  }

  void Encourage() {
    Limit();
    static constexpr char kGoOn[] = "HTTP/1.1 100 Continue\r\n\r\n";
    asio::async_write(m_stream, asio::buffer(kGoOn, sizeof kGoOn - 1),
                      [self = this->shared_from_this()](error_code failure, std::size_t) {
                        if (!failure) self->ReadBody();
                      });
  }

  void ReadBody() {
    Limit();
    http::async_read(m_stream, m_buffer, *m_parser,
                     [self = this->shared_from_this()](error_code failure, std::size_t) {
                       if (failure)
                         self->FailRead(failure);
                       else
                         self->Execute();
                     });
  }

  void Execute() {
    auto message = m_parser->release();
    THttpRequest request;
    request.method = Text(message.method_string());
    for (const auto& field : message)
      request.headers.emplace_back(Text(field.name_string()), Text(field.value()));
    request.body = std::move(message.body());
    const auto executor = m_stream.get_executor();
    asio::post(m_services.work,
               [self = this->shared_from_this(), executor, request = std::move(request)]() mutable {
                 auto reply = self->Own(self->MakeReply(request));
                 asio::post(executor, [self = std::move(self), reply = std::move(reply)]() mutable {
                   auto& connection = *self;
                   connection.Write(std::move(reply));
                 });
               });
  }

  THttpReply MakeReply(const THttpRequest& request) const {
    try {
      return request.method == "GET" ? m_services.makePage() : m_services.handle(request);
    } catch (const std::bad_alloc&) {
      return PlainReply(503, "the server is out of memory");
    } catch (const std::exception& failure) {
      return PlainReply(500, failure.what());
    }
  }

  // What a reply has still to write belongs to the thread of the namespace and ends there.
  TReplyPtr Own(THttpReply reply) const {
    auto& work = m_services.work;
    return TReplyPtr(new THttpReply(std::move(reply)), [&work](THttpReply* over) {
      asio::post(work, [owned = std::unique_ptr<THttpReply>(over)] {});
    });
  }

  void Refuse(unsigned status, const std::string& text) {
    m_keepAlive = false;
    Write(std::make_shared<THttpReply>(PlainReply(status, text)));
  }

  // A client of HTTP/1.0 takes an answer in pieces as what comes until the end.
  void Write(TReplyPtr reply) {
    m_reply = std::move(reply);
    const bool isWhole = !m_reply->next;
    if (!isWhole && m_isOld) m_keepAlive = false;
    m_header.emplace(static_cast<http::status>(m_reply->status), m_isOld ? 10 : 11);
    for (const auto& [name, value] : m_reply->headers) m_header->insert(name, value);
    m_header->set("X-Content-Type-Options", "nosniff");
    m_header->keep_alive(m_keepAlive);
    if (isWhole)
      m_header->content_length(m_reply->body.size());
    else if (!m_isOld)
      m_header->chunked(true);
    m_serializer.emplace(*m_header);
    Limit();
    http::async_write_header(m_stream, *m_serializer,
                             [self = this->shared_from_this()](error_code failure, std::size_t) {
                               if (!failure) self->WritePiece(!self->m_reply->next);
                             });
  }

  void WritePiece(bool isLast) {
    auto done = [self = this->shared_from_this(), isLast](error_code failure, std::size_t) {
      if (failure) return;
      if (isLast)
        self->Finish();
      else
        self->MakePiece();
    };
    Limit();
    const bool inChunks = m_header->chunked() && !m_reply->body.empty();
    if (inChunks)
      asio::async_write(m_stream, http::make_chunk(asio::buffer(m_reply->body)), std::move(done));
    else
      asio::async_write(m_stream, asio::buffer(m_reply->body), std::move(done));
  }

  void MakePiece() {
    const auto executor = m_stream.get_executor();
    asio::post(m_services.work, [self = this->shared_from_this(), executor]() mutable {
      bool fails = false;
      bool more = false;
      try {
        more = self->m_reply->next(self->m_reply->body);
      } catch (const std::bad_alloc&) {
        fails = true;  // the answer is cut off, which the client sees by its missing end
      }
      asio::post(executor, [self = std::move(self), more, fails] {
        if (!fails) self->WritePiece(!more);
      });
    });
  }

  void Finish() {
    if (!m_header->chunked()) return Next();
    Limit();
    asio::async_write(m_stream, http::make_chunk_last(),
                      [self = this->shared_from_this()](error_code failure, std::size_t) {
                        if (!failure) self->Next();
                      });
  }

  void Next() {
    m_reply.reset();
    if (m_keepAlive)
      ReadHeader();
    else
      Shut();
  }

  // What the client still sends is read and dropped for a while: closing at once would take
  // the answer away from it.
  void Shut() {
#if defined(HAVHOST_TLS)
    if constexpr (kIsTls) {
      Limit();
      m_stream.async_shutdown([self = this->shared_from_this()](error_code){});
      return;
    }
#endif
    auto& socket = beast::get_lowest_layer(m_stream);
    error_code ignored;
    socket.socket().shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
    socket.expires_after(kDrainTime);
    Drain();
  }

  void Drain() {
    m_buffer.consume(m_buffer.size());
    m_stream.async_read_some(m_buffer.prepare(16 * 1024),
                             [self = this->shared_from_this()](error_code failure, std::size_t) {
                               if (!failure) self->Drain();
                             });
  }

  TStream m_stream;
  TServices& m_services;
  beast::flat_buffer m_buffer;
  std::optional<http::request_parser<http::string_body>> m_parser;
  bool m_isOld = false;
  bool m_keepAlive = false;
  TReplyPtr m_reply;
  std::optional<http::response<http::empty_body>> m_header;
  std::optional<http::response_serializer<http::empty_body>> m_serializer;
};

}  // namespace

void Serve(asio::ip::tcp::socket socket, TServices& services) {
  std::make_shared<TConnection<beast::tcp_stream>>(beast::tcp_stream(std::move(socket)), services)
      ->Start();
}

#if defined(HAVHOST_TLS)
void ServeTls(asio::ip::tcp::socket socket, asio::ssl::context& context, TServices& services) {
  using TStream = beast::ssl_stream<beast::tcp_stream>;
  std::make_shared<TConnection<TStream>>(TStream(std::move(socket), context), services)->Start();
}
#endif

void TurnAway(asio::ip::tcp::socket socket) {
  static constexpr char kBusy[] =
      "HTTP/1.1 503 Service Unavailable\r\nRetry-After: 1\r\nContent-Length: 0\r\n"
      "Connection: close\r\n\r\n";
  error_code ignored;
  socket.non_blocking(true, ignored);
  socket.write_some(asio::buffer(kBusy, sizeof kBusy - 1), ignored);
}

}  // namespace havhost
