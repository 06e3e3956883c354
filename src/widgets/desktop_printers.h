// The printers of this computer.
#pragma once

#include "widgets/printing.h"

#include <QStringList>

class QPrinter;

namespace nivora {

/// The printers of the system, and the print dialog of the program.
class DesktopPrinters : public Printers {
public:
    std::optional<PrintChoice> choose(QWidget* window, const PrintOffer& offer) override;
};

/// The index in `names` of the printer that was chosen before. Its name may have been kept in a field of 32
/// characters. @return -1 if there is no printer of that name
[[nodiscard]] int kept_printer(const QStringList& names, const std::string& kept);

/// The printer of this name with the page of the set-up; an empty name stands for the standard printer.
[[nodiscard]] std::unique_ptr<QPrinter> make_printer(const QString& name, const PageSetup& page);

/// The choice of a printer by its name. It has no device if the system has no such printer any more.
[[nodiscard]] PrintChoice printer_choice(std::unique_ptr<QPrinter> printer, const QString& name,
                                         const PageSetup& page);

/// The names of the system's printers, the standard one first.
[[nodiscard]] QStringList printer_names();

}  // namespace nivora
