// The application of Qt that fonts need, in a program without windows.
#pragma once

#include <QGuiApplication>
#include <array>
#include <memory>

namespace nivora {

/// Where the process has no application of Qt, this is one for the time of its life; it opens no window and
/// needs no display.
class FontApplication {
public:
    FontApplication() {
        if (QCoreApplication::instance() != nullptr) return;
        qputenv("QT_QPA_PLATFORM", "offscreen");
        // What Qt notes about the desktop around it means nothing here.
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        application_ = std::make_unique<QGuiApplication>(count_, arguments_.data());
    }
    FontApplication(const FontApplication&) = delete;
    FontApplication& operator=(const FontApplication&) = delete;
    ~FontApplication() {
        if (!application_) return;
        application_.reset();
        qInstallMessageHandler(nullptr);
    }

private:
    std::array<char, 13> name_{"nivora-batch"};
    std::array<char*, 2> arguments_{name_.data(), nullptr};
    int count_ = 1;
    std::unique_ptr<QGuiApplication> application_;
};

}  // namespace nivora
