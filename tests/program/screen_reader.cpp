#include "tests/program/screen_reader.h"

#include <QDBusArgument>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QStringList>

namespace nivora {
namespace {

constexpr const char* k_accessible = "org.a11y.atspi.Accessible";
constexpr int k_answer_within_ms = 10000;

QDBusMessage call(const QDBusConnection& bus, const QString& program, const QString& path,
                  const char* interface, const char* method, const QVariantList& arguments = {}) {
    QDBusMessage message = QDBusMessage::createMethodCall(program, path, QString::fromUtf8(interface),
                                                          QString::fromUtf8(method));
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, k_answer_within_ms);
}

QVariant first_of(const QDBusMessage& answer) {
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return {};
    return answer.arguments().front();
}

/// The bus on which programs describe their windows. It is separate; the session's bus starts it on request.
QDBusConnection accessibility_bus(const std::string& session_bus) {
    // Qt keeps connections by name; each test has its own buses.
    const QString session_name = QString::fromStdString(session_bus);
    const auto session = QDBusConnection::connectToBus(session_name, session_name);
    const QVariant address = first_of(call(session, QStringLiteral("org.a11y.Bus"),
                                           QStringLiteral("/org/a11y/bus"), "org.a11y.Bus", "GetAddress"));
    return QDBusConnection::connectToBus(address.toString(), session_name + QStringLiteral(" windows"));
}

}  // namespace

ScreenElement::ScreenElement(QDBusConnection bus, QString program, QString path)
    : bus_(std::move(bus)), program_(std::move(program)), path_(std::move(path)) {}

std::string ScreenElement::role() const {
    return first_of(call(bus_, program_, path_, k_accessible, "GetRoleName")).toString().toStdString();
}

std::string ScreenElement::name() const {
    const QVariant answer = first_of(call(bus_, program_, path_, "org.freedesktop.DBus.Properties", "Get",
                                          {QString::fromUtf8(k_accessible), QStringLiteral("Name")}));
    return answer.value<QDBusVariant>().variant().toString().toStdString();
}

std::string ScreenElement::text() const {
    return first_of(call(bus_, program_, path_, "org.a11y.atspi.Text", "GetText", {0, -1}))
        .toString()
        .toStdString();
}

std::vector<ScreenElement> ScreenElement::children() const {
    std::vector<ScreenElement> elements;
    const QVariant answer = first_of(call(bus_, program_, path_, k_accessible, "GetChildren"));
    if (!answer.canConvert<QDBusArgument>()) return elements;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath path;
        list.beginStructure();
        list >> program >> path;
        list.endStructure();
        elements.emplace_back(bus_, program_, path.path());
    }
    list.endArray();
    return elements;
}

bool ScreenElement::has_state(unsigned number) const {
    const QVariant answer = first_of(call(bus_, program_, path_, k_accessible, "GetState"));
    if (!answer.canConvert<QDBusArgument>()) return false;
    QList<uint> words;
    answer.value<QDBusArgument>() >> words;
    return number / 32 < static_cast<unsigned>(words.size()) &&
           (words.at(static_cast<qsizetype>(number / 32)) >> (number % 32) & 1U) != 0;
}

ScreenElement::Point ScreenElement::middle() const {
    constexpr uint k_on_screen = 0;
    const QVariant answer =
        first_of(call(bus_, program_, path_, "org.a11y.atspi.Component", "GetExtents", {k_on_screen}));
    if (!answer.canConvert<QDBusArgument>()) return {};
    const auto place = answer.value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    place.beginStructure();
    place >> x >> y >> width >> height;
    place.endStructure();
    return {x + width / 2, y + height / 2};
}

std::optional<ScreenElement> ScreenElement::find(const std::string& role, const std::string& name) const {
    for (const ScreenElement& child : children()) {
        if (child.role() == role && (name.empty() || child.name() == name) && child.is_showing())
            return child;
        if (auto below = child.find(role, name)) return below;
    }
    return std::nullopt;
}

std::string ScreenElement::all_words() const {
    std::string words;
    for (const ScreenElement& child : children()) {
        const std::string text = child.text();
        if (child.is_showing()) {
            words += "[" + child.role() + "] " + child.name() + (text.empty() ? "" : " = " + text) + "\n";
        }
        words += child.all_words();
    }
    return words;
}

ScreenReader::ScreenReader(const std::string& bus_address) : bus_(accessibility_bus(bus_address)) {
    if (!bus_.isConnected()) throw std::runtime_error("the bus does not answer");
}

std::vector<ScreenElement> ScreenReader::windows(pid_t program) const {
    std::vector<ScreenElement> found;
    const QString bus_service = QStringLiteral("org.freedesktop.DBus");
    const QString bus_path = QStringLiteral("/org/freedesktop/DBus");
    const QStringList names =
        first_of(call(bus_, bus_service, bus_path, "org.freedesktop.DBus", "ListNames")).toStringList();
    for (const QString& name : names) {
        if (!name.startsWith(QLatin1Char(':'))) continue;
        const QVariant number = first_of(
            call(bus_, bus_service, bus_path, "org.freedesktop.DBus", "GetConnectionUnixProcessID", {name}));
        if (number.toUInt() != static_cast<uint>(program)) continue;
        const ScreenElement root{bus_, name, QStringLiteral("/org/a11y/atspi/accessible/root")};
        for (const ScreenElement& window : root.children()) {
            if (window.is_showing()) found.push_back(window);
        }
    }
    return found;
}

std::optional<ScreenElement> ScreenReader::window(pid_t program, const std::string& title) const {
    for (const ScreenElement& window : windows(program)) {
        if (window.name() == title) return window;
    }
    return std::nullopt;
}

}  // namespace nivora
