// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Qt/QtHttpClient.h"

#include "Platform/Linux/SpareDescriptors.h"
#include "Platform/Qt/EventLoopQueue.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QUrl>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <future>
#include <string_view>
#include <thread>
#include <utility>

namespace sallowmere {

namespace {

constexpr std::size_t largestBody = std::size_t{64} << 20;
constexpr std::size_t readSize = std::size_t{64} << 10;
constexpr int firstErrorStatus = 400;
/// Qt ends the program when one of the threads that it starts gets no descriptor. With a proxy and
/// a name to look up it takes half as many.
constexpr std::size_t neededDescriptors = 32;

struct Question {
    HttpRequest request;
    HttpClient::Completion completion;
    std::chrono::steady_clock::time_point asked = std::chrono::steady_clock::now();

    double secondsLeft() const {
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - asked;
        return std::max(request.timeout - passed.count(), 0.0);
    }
};

/// Not left to what Qt was built to do by default.
class DesktopProxies : public QNetworkProxyFactory {
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
        return systemProxyForQuery(query);
    }
};

/// A line break would end the header and begin another one.
bool isOneLine(const std::string& text) {
    return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string::npos;
}

/// The request in Qt's terms; absent when it is not to be sent. Qt would read files as well.
std::optional<QNetworkRequest> qtRequest(const HttpRequest& request) {
    const QUrl url(QString::fromStdString(request.url), QUrl::StrictMode);
    if (url.scheme() != u"https") {
        return std::nullopt;
    }
    QNetworkRequest result(url);
    for (const auto& [name, value] : request.headers) {
        if (!isOneLine(name) || !isOneLine(value)) {
            return std::nullopt;
        }
        result.setRawHeader(QByteArray::fromStdString(name), QByteArray::fromStdString(value));
    }
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    // Else a server that asks for another kind of credentials is asked again.
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return result;
}

/// Qt has errors for statuses too.
bool isMereStatus(QNetworkReply::NetworkError error) {
    return error >= QNetworkReply::ContentAccessDenied && error != QNetworkReply::ProtocolFailure;
}

/// Waits for one answer, and deletes itself when it has told what came. It has a manager of its own
/// because Qt keeps a manager's connections, also those on which a server fell silent.
class Exchange : public QObject {
public:
    Exchange(const QNetworkRequest& request, HttpClient::Completion completion, QObject* parent)
        : QObject(parent), completion_(std::move(completion)) {
        manager_.setProxyFactory(new DesktopProxies);
        reply_ = manager_.get(request);
        connect(reply_, &QNetworkReply::readyRead, this, [this] { readBody(); });
        connect(reply_, &QNetworkReply::finished, this, [this] { finish(); });
    }

    void giveUpAfter(double seconds, MainQueue& queue) {
        deadline_ = queue.after(seconds, [this] { giveUp(); });
    }

private:
    void giveUp() {
        isGivenUp_ = true;
        reply_->abort();
    }

    void readBody() {
        std::array<char, readSize> buffer{};
        qint64 count = 0;
        // In small parts: what is compressed may be far larger than what has arrived.
        while (!isGivenUp_ && (count = reply_->read(buffer.data(), buffer.size())) > 0) {
            body_.append(buffer.data(), static_cast<std::size_t>(count));
            if (body_.size() > largestBody) {
                giveUp();
            }
        }
    }

    void finish() {
        deadline_->cancel();
        readBody();
        deleteLater();
        std::exchange(completion_, nullptr)(response());
    }

    std::optional<HttpResponse> response() {
        const int status = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const bool isWhole = reply_->error() == QNetworkReply::NoError
                             || (status >= firstErrorStatus && isMereStatus(reply_->error()));
        return status > 0 && isWhole && !isGivenUp_
                   ? std::optional(HttpResponse{status, std::move(body_)})
                   : std::nullopt;
    }

    QNetworkAccessManager manager_;
    QNetworkReply* reply_ = nullptr;
    HttpClient::Completion completion_;
    std::shared_ptr<ScheduledWork> deadline_;
    std::string body_;
    bool isGivenUp_ = false;
};

} // namespace

/// A thread of the standard library, because race detectors do not see how Qt's own threads end.
class QtHttpClient::NetworkThread {
public:
    explicit NetworkThread(std::optional<QSslConfiguration> tls)
        : tls_(std::move(tls)), thread_([this] { run(); }), queue_(queueMade_.get_future().get()) {}
    NetworkThread(const NetworkThread&) = delete;
    NetworkThread& operator=(const NetworkThread&) = delete;

    ~NetworkThread() {
        queue_->post([this] { loop_->quit(); });
    }

    void ask(Question question) {
        queue_->post([this, question = std::move(question)]() mutable { send(question); });
    }

private:
    void run() {
        QEventLoop loop;
        loop_ = &loop;
        std::optional<EventLoopQueue> queue;
        try {
            queue.emplace();
        } catch (...) {
            queueMade_.set_exception(std::current_exception());
            return;
        }
        QObject exchanges;
        exchanges_ = &exchanges;
        queueMade_.set_value(&*queue);
        loop.exec();
    }

    void send(Question& question) {
        std::optional<QNetworkRequest> request = qtRequest(question.request);
        if (!request || !hasSpareDescriptors(neededDescriptors)) {
            question.completion(std::nullopt);
            return;
        }
        request->setSslConfiguration(tls());
        auto* exchange = new Exchange(*request, std::move(question.completion), exchanges_);
        exchange->giveUpAfter(question.secondsLeft(), *queue_);
    }

    /// Made here and not before, because reading the system's certificates takes its time.
    const QSslConfiguration& tls() {
        if (!tls_) {
            tls_ = QSslConfiguration::defaultConfiguration();
        }
        tls_->setPeerVerifyMode(QSslSocket::VerifyPeer);
        return *tls_;
    }

    /// The thread's own, as is what these point to. The exchanges under way have that parent.
    std::optional<QSslConfiguration> tls_;
    QEventLoop* loop_ = nullptr;
    QObject* exchanges_ = nullptr;

    std::promise<EventLoopQueue*> queueMade_;
    std::jthread thread_;
    EventLoopQueue* queue_;
};

QtHttpClient::QtHttpClient(std::optional<QSslConfiguration> tls)
    : thread_(std::make_unique<NetworkThread>(std::move(tls))) {}

QtHttpClient::~QtHttpClient() = default;

void QtHttpClient::get(HttpRequest request, Completion completion) {
    thread_->ask({std::move(request), std::move(completion)});
}

} // namespace sallowmere
