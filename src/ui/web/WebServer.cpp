#include "ui/web/WebServer.h"

#include <array>
#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

#include <httplib.h>

#include "support/Utf8Paths.h"
#include "ui/script/EventScript.h"

namespace railwright::ui::web {
namespace {

namespace fs = std::filesystem;

// How long a state request waits for a change before it answers with the present state.
constexpr std::chrono::seconds kStateWait{15};

std::string NewToken() {
    std::random_device device;
    std::string token;
    for (int word = 0; word < 4; ++word) {
        const uint32_t bits = device();
        static const char kHex[] = "0123456789abcdef";
        for (int shift = 28; shift >= 0; shift -= 4) {
            token += kHex[(bits >> shift) & 0xF];
        }
    }
    return token;
}

// Compares in time that does not depend on where the texts differ.
bool SameSecret(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    unsigned char difference = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    }
    return difference == 0;
}

// Everything goes out uncompressed: on the loopback, compressing costs more time than it saves
// (a 1.5 MB script took seconds). The library compresses text/* and a few types written exactly,
// so scripts and JSON carry a charset parameter (and scripts the type application/javascript,
// which browsers take for modules as well).
constexpr const char* kJson = "application/json; charset=utf-8";

std::string_view MediaType(const fs::path& file) {
    static const std::array<std::pair<std::string_view, std::string_view>, 12> kTypes{{
        {".html", "text/html; charset=utf-8"},
        {".js", "application/javascript; charset=utf-8"},
        {".css", "text/css; charset=utf-8"},
        {".json", kJson},
        {".gltf", "model/gltf+json"},
        {".glb", "model/gltf-binary"},
        {".bin", "application/octet-stream"},
        {".png", "image/png"},
        {".jpg", "image/jpeg"},
        {".jpeg", "image/jpeg"},
        {".svg", "image/svg+xml"},
        {".webp", "image/webp"},
    }};
    std::string extension = support::Utf8FromPath(file.extension());
    for (char& c : extension) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    for (const auto& [known, type] : kTypes) {
        if (extension == known) {
            return type;
        }
    }
    return "application/octet-stream";
}

void Refuse(httplib::Response& response, int status, std::string_view text) {
    response.status = status;
    response.set_content(std::string(text) + "\n", "text/plain; charset=utf-8");
}

// Whether `path` (canonical) lies inside `folder` (canonical).
bool Inside(const fs::path& path, const fs::path& folder) {
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != ".." && !relative.is_absolute();
}

}  // namespace

bool IsPlainRelativePath(std::string_view path) {
    if (path.empty()) {
        return false;
    }
    size_t start = 0;
    while (start <= path.size()) {
        const size_t end = std::min(path.find('/', start), path.size());
        const std::string_view segment = path.substr(start, end - start);
        if (segment.empty() || segment == "." || segment == "..") {
            return false;
        }
        start = end + 1;
    }
    for (const char c : path) {
        if (c == '\\' || c == ':' || static_cast<unsigned char>(c) < 0x20) {
            return false;
        }
    }
    return true;
}

struct WebServer::Impl {
    httplib::Server server;
    std::atomic<bool> listenEnded{false};
    fs::path pageFolder;   // canonical
    fs::path modelFolder;  // canonical
};

WebServer::WebServer(WebUserInterface& ui, ServerOptions options)
    : ui_(ui), options_(std::move(options)), token_(NewToken()), impl_(std::make_unique<Impl>()) {}

WebServer::~WebServer() { Stop(); }

std::string WebServer::Address() const {
    return "http://127.0.0.1:" + std::to_string(port_) + "/" + token_ + "/";
}

std::string WebServer::Start() {
    std::error_code error;
    impl_->pageFolder = fs::canonical(options_.pageFolder, error);
    if (error || !fs::is_regular_file(impl_->pageFolder / "index.html", error)) {
        return "the page's files are missing: no \"" +
               support::Utf8FromPath(options_.pageFolder / "index.html") + "\"";
    }
    impl_->modelFolder = fs::canonical(options_.modelFolder, error);
    if (error) {
        return "the model's folder \"" + support::Utf8FromPath(options_.modelFolder) +
               "\" cannot be read";
    }

    httplib::Server& server = impl_->server;
    server.set_payload_max_length(kBodyLimit);
    server.set_default_headers({
        {"X-Content-Type-Options", "nosniff"},
        {"Referrer-Policy", "no-referrer"},
        {"X-Frame-Options", "DENY"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        // The import map of index.html is an inline script of our own.
        {"Content-Security-Policy",
         "default-src 'self'; script-src 'self' 'unsafe-inline'; style-src 'self' 'unsafe-inline'; "
         "img-src 'self' data: blob:; connect-src 'self' data: blob:; frame-ancestors 'none'; "
         "base-uri 'none'; form-action 'none'"},
    });

    server.set_pre_routing_handler([this](const httplib::Request& request,
                                          httplib::Response& response) {
        using Result = httplib::Server::HandlerResponse;
        const std::string port = std::to_string(port_);
        const std::string host = request.get_header_value("Host");
        if (host != "127.0.0.1:" + port && host != "localhost:" + port) {
            Refuse(response, 403, "Forbidden: this server answers only to 127.0.0.1:" + port);
            return Result::Handled;
        }
        if (request.has_header("Origin")) {
            const std::string origin = request.get_header_value("Origin");
            if (origin != "http://127.0.0.1:" + port && origin != "http://localhost:" + port) {
                Refuse(response, 403, "Forbidden: no access from another origin");
                return Result::Handled;
            }
        }
        const std::string site = request.get_header_value("Sec-Fetch-Site");
        if (site == "cross-site" || site == "same-site") {
            Refuse(response, 403, "Forbidden: no access from another site");
            return Result::Handled;
        }
        if (request.method != "GET" && request.method != "POST" && request.method != "HEAD") {
            Refuse(response, 403, "Forbidden");
            return Result::Handled;
        }
        const std::string prefix = "/" + token_ + "/";
        if (request.path.size() < prefix.size() ||
            !SameSecret(std::string_view(request.path).substr(0, prefix.size()), prefix)) {
            Refuse(response, 403, "Forbidden: the address needs the token that railwright printed");
            return Result::Handled;
        }
        return Result::Unhandled;
    });

    const size_t prefixLength = token_.size() + 2;
    const auto serveFile = [](httplib::Response& response, const fs::path& folder,
                              std::string_view relative, bool known) {
        if (!IsPlainRelativePath(relative)) {
            Refuse(response, 403, "Forbidden: not a plain relative path");
            return;
        }
        if (!known) {
            Refuse(response, 404, "Not found");
            return;
        }
        std::error_code fault;
        const fs::path file =
            fs::canonical(folder / support::PathFromUtf8(std::string(relative)), fault);
        if (fault || !fs::is_regular_file(file, fault)) {
            Refuse(response, 404, "Not found");
            return;
        }
        if (!Inside(file, folder)) {
            Refuse(response, 403, "Forbidden: the file lies outside its folder");
            return;
        }
        std::ifstream in(file, std::ios::binary);
        std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        if (!in && !in.eof()) {
            Refuse(response, 404, "Not found");
            return;
        }
        response.set_header("Cache-Control", "no-cache");
        response.set_content(std::move(bytes), std::string(MediaType(file)).c_str());
    };

    server.Get(".*", [this, prefixLength, serveFile](const httplib::Request& request,
                                                     httplib::Response& response) {
        const std::string_view rest = std::string_view(request.path).substr(prefixLength);
        if (rest == "api/state") {
            uint64_t after = 0;
            if (request.has_param("after")) {
                try {
                    after = std::stoull(request.get_param_value("after"));
                } catch (const std::exception&) {
                    Refuse(response, 400, "Bad request: \"after\" is not a number");
                    return;
                }
            }
            response.set_header("Cache-Control", "no-store");
            response.set_content(ui_.WaitForState(after, kStateWait), kJson);
            return;
        }
        if (rest.substr(0, 4) == "api/") {
            Refuse(response, 404, "Not found");
            return;
        }
        if (rest.substr(0, 6) == "model/") {
            const std::string_view file = rest.substr(6);
            serveFile(response, impl_->modelFolder, file,
                      options_.modelFiles.count(std::string(file)) > 0);
            return;
        }
        serveFile(response, impl_->pageFolder, rest.empty() ? "index.html" : rest, true);
    });

    server.Post(".*", [this, prefixLength](const httplib::Request& request,
                                           httplib::Response& response) {
        const std::string_view rest = std::string_view(request.path).substr(prefixLength);
        response.set_header("Cache-Control", "no-store");
        if (rest == "api/close") {
            ui_.Close();
            response.status = 204;
            return;
        }
        if (rest != "api/event") {
            Refuse(response, 404, "Not found");
            return;
        }
        // A JSON body cannot come from a plain cross-site form or beacon.
        if (request.get_header_value("Content-Type").rfind("application/json", 0) != 0) {
            Refuse(response, 415, "Unsupported media type: events are application/json");
            return;
        }
        const script::EventParseResult parsed = script::ParseUserEvent(request.body);
        if (!parsed.event) {
            Refuse(response, 400, "Bad request: " + parsed.error);
            return;
        }
        const WebUserInterface::PostResult result = ui_.Post(*parsed.event);
        const nlohmann::json refused =
            result.refusal ? nlohmann::json(*result.refusal) : nlohmann::json(nullptr);
        response.set_content("{\"refused\":" + refused.dump() + ",\"state\":" + result.state + "}",
                             kJson);
    });

    const int requested = options_.port;
    port_ = requested == 0 ? server.bind_to_any_port("127.0.0.1")
                           : (server.bind_to_port("127.0.0.1", requested) ? requested : -1);
    if (port_ <= 0) {
        port_ = 0;
        return requested == 0 ? "no free port on 127.0.0.1"
                              : "port " + std::to_string(requested) + " on 127.0.0.1 is taken";
    }
    thread_ = std::thread([this] {
        impl_->server.listen_after_bind();
        impl_->listenEnded = true;
    });
    return {};
}

void WebServer::Stop() {
    if (thread_.joinable()) {
        // Waits still pending end now; a stop before the server runs would be lost.
        ui_.Close();
        while (!impl_->server.is_running() && !impl_->listenEnded) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        impl_->server.stop();
        thread_.join();
    }
}

}  // namespace railwright::ui::web
