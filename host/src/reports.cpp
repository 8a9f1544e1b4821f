#include "reports.h"

namespace zqm::host {

const char* nameOf(Report::Kind kind) {
    switch (kind) {
    case Report::Kind::NullHandle:
        return "null handle";
    case Report::Kind::ForeignHandle:
        return "foreign handle";
    case Report::Kind::DeadHandle:
        return "dead handle";
    case Report::Kind::WrongKind:
        return "handle of the wrong kind";
    case Report::Kind::UnbalancedLock:
        return "unbalanced lock";
    case Report::Kind::MissingLock:
        return "missing lock";
    case Report::Kind::DamagedHeader:
        return "damaged header";
    case Report::Kind::BadRecord:
        return "bad record";
    case Report::Kind::BadDeclaration:
        return "bad declaration";
    case Report::Kind::BadArgument:
        return "bad argument";
    case Report::Kind::WrongThread:
        return "wrong thread";
    }
    return "unknown report";
}

} // namespace zqm::host
