// The printers of this computer.
#pragma once

#include "widgets/printing.h"

#include <QStringList>

class QPrinter;

namespace nivora {

/// The printers that the system knows, with the print dialog of the program.
class DesktopPrinters : public Printers {
public:
    std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) override;
};

/// The printer that was chosen before, among those that there are. Its name may have been kept in a field of
/// 32 characters. @return -1 if there is none of that name
[[nodiscard]] int kept_printer(const QStringList& names, const std::string& kept);

/// A printer of that name with the page of the set-up; with an empty name, the system's standard printer.
[[nodiscard]] std::unique_ptr<QPrinter> make_printer(const QString& name, const PageSetup& page);

/// The names of the system's printers, the standard one first.
[[nodiscard]] QStringList printer_names();

}  // namespace nivora
