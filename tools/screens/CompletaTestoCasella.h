// Puts the typing aid on a text box: each key stroke that adds text completes it from a field of a
// table; a deleting key (Backspace, Delete, Ctrl+C, Clear) leaves the text as typed.
#pragma once

#include <string>

#include "store/dao.h"

class QLineEdit;

// A null database means the session's archive at the time of typing.
void CollegaCompletaTesto(QLineEdit* casella, const std::string& tabella, const std::string& campo,
                          bool uguale = false, store::DatabasePtr db = nullptr);
