#include "core/session.h"

namespace core {

Session& session() {
    static Session s;
    return s;
}

}  // namespace core
