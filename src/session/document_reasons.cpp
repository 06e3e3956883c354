#include "session/document_reasons.h"

namespace nivora {

const char* errmsg(int code) {
    switch (code) {
        case k_file_not_found: return "File not found";
        case 3: return "Path not found";
        case k_access_denied: return "Access denied";
        case 8: return "Out of memory";
        case 11: return "Invalid EXE file or error in EXE image";
        case 26: return "A sharing violation occurred";
        case 27: return "Incomplete or invalid file association";
        case 28: return "DDE Time out";
        case 29: return "DDE transaction failed";
        case 30: return "DDE busy";
        case k_no_association: return "No association for file extension";
        case 32: return "DLL not found";
        default: return "Unknown error";
    }
}

}  // namespace nivora
