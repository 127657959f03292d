// The local web server of `railwright wizard`: the page, the model's files and the wizard's state
// and events, for one person's browser on this machine.
//
// Addresses, all under the token (32 hexadecimal digits, 128 random bits) that the command
// prints:
//
//   GET  /TOKEN/                   the page (index.html of the page's folder)
//   GET  /TOKEN/<file>             the page's own files (scripts, styles, three.js)
//   GET  /TOKEN/model/<file>       the model and the files its glTF references, in its folder
//   GET  /TOKEN/api/state?after=N  the wizard's state (WebUserInterface), once newer than N
//   POST /TOKEN/api/event          one event, as the event script writes it, or an answer:
//                                  { "refused": null or "the reason", "state": {...} }
//   POST /TOKEN/api/close          the page's own close: the wizard closes as by its close box
//
// What is refused, and how:
//   - the server listens on 127.0.0.1 only;
//   - a request whose Host is not 127.0.0.1:PORT or localhost:PORT (DNS rebinding), that comes
//     from another origin (Origin, Sec-Fetch-Site), that is a CORS preflight (OPTIONS), or whose
//     path lacks the token: 403; no response carries Access-Control-Allow-Origin;
//   - a body past kBodyLimit: 413; an event that is not JSON: 400;
//   - a file path with "..", ".", an empty segment, "\", ":" (absolute paths, drives): 403; a file
//     whose real path, symbolic links followed, leaves its folder: 403; a model file the glTF does
//     not reference, and any other unknown name: 404.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "ui/web/WebUserInterface.h"

namespace railwright::ui::web {

inline constexpr size_t kBodyLimit = 64 * 1024;

struct ServerOptions {
    std::filesystem::path pageFolder;   // index.html and the page's files
    std::filesystem::path modelFolder;  // the model's folder
    // The model file and the files its glTF references, relative to modelFolder with "/".
    std::set<std::string> modelFiles;
    int port = 0;  // 0: a free port
};

// Whether a file path of a request may be looked up at all: relative, no "..", "." or empty
// segments, no "\" or ":" and no control characters.
bool IsPlainRelativePath(std::string_view path);

class WebServer {
public:
    WebServer(WebUserInterface& ui, ServerOptions options);
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    // Binds 127.0.0.1 and starts serving on a thread of its own; an error text when the port
    // cannot be had.
    [[nodiscard]] std::string Start();
    void Stop();

    int Port() const { return port_; }
    const std::string& Token() const { return token_; }
    // The page's address, with the token: http://127.0.0.1:PORT/TOKEN/
    std::string Address() const;

private:
    struct Impl;
    WebUserInterface& ui_;
    ServerOptions options_;
    std::string token_;
    int port_ = 0;
    std::unique_ptr<Impl> impl_;
    std::thread thread_;
};

}  // namespace railwright::ui::web
