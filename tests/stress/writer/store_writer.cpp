// A writer process for the tests of several users on one archive:
//   store_writer FILE TABLE FIRST COUNT [BATCH]
// inserts rows ID = FIRST .. FIRST+COUNT-1 (Testo 'r<ID>') into TABLE, one statement each or, with
// BATCH > 1, in batches of that many rows, and writes each ID to standard output once its commit
// has returned; the write is unbuffered, so a process killed at any point has acknowledged exactly
// the rows it wrote as committed.
// An engine error prints "error NUMBER" and ends with status 1.
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "store/dao.h"

namespace {

// One write of a batch's few ids: a pipe takes it whole, so a kill never cuts a number short.
void acknowledge(long first, long last) {
    std::string out;
    for (long id = first; id <= last; ++id) out += std::to_string(id) + "\n";
    if (::write(1, out.data(), out.size()) != static_cast<ssize_t>(out.size())) std::_Exit(3);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) return 2;
    const std::string table = argv[2];
    const long first = std::atol(argv[3]), count = std::atol(argv[4]);
    const long batch = argc > 5 ? std::max(1L, std::atol(argv[5])) : 1;
    try {
        auto db = store::Workspace::Default().OpenDatabase(argv[1]);
        for (long id = first; id < first + count; id += batch) {
            long last = std::min(first + count - 1, id + batch - 1);
            {
                store::WriteBatch b(*db, static_cast<int>(batch));
                for (long k = id; k <= last; ++k) {
                    db->Execute("INSERT INTO [" + table + "] (ID, Testo) VALUES (" + std::to_string(k) + ", 'r" +
                                std::to_string(k) + "')");
                }
                b.End();
            }
            acknowledge(id, last);
        }
    } catch (const store::JetError& e) {
        std::string msg = "error " + std::to_string(e.number()) + "\n";
        (void)!::write(2, msg.data(), msg.size());
        return 1;
    }
    return 0;
}
