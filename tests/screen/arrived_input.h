// Keys and clicks that the display has delivered to this process.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <QCoreApplication>
#include <cstdint>
#include <cstring>

namespace nivora {

/// Counts the input that arrives during its life. The program that sends a key ends before the key has passed
/// through the window manager, so its end does not mean that the key has arrived.
class ArrivedInput : public QAbstractNativeEventFilter {
public:
    ArrivedInput() { QCoreApplication::instance()->installNativeEventFilter(this); }
    ArrivedInput(const ArrivedInput&) = delete;
    ArrivedInput& operator=(const ArrivedInput&) = delete;
    ~ArrivedInput() override { QCoreApplication::instance()->removeNativeEventFilter(this); }

    [[nodiscard]] int key_releases() const { return key_releases_; }
    [[nodiscard]] int button_releases() const { return button_releases_; }

    bool nativeEventFilter(const QByteArray& kind, void* message, qintptr*) override {
        if (kind != "xcb_generic_event_t") return false;
        // From the X protocol: an event begins with its type; an event of the input extension has its own
        // type in the ninth and tenth byte.
        constexpr int k_key_release = 3;
        constexpr int k_button_release = 5;
        constexpr int k_extension = 35;
        const auto* bytes = static_cast<const std::uint8_t*>(message);
        const int core = bytes[0] & 0x7F;
        std::uint16_t extended = 0;
        std::memcpy(&extended, bytes + 8, sizeof extended);
        const int number = core == k_extension ? extended : core;
        if (number == k_key_release) ++key_releases_;
        if (number == k_button_release) ++button_releases_;
        return false;
    }

private:
    int key_releases_ = 0;
    int button_releases_ = 0;
};

}  // namespace nivora
