#include "core/esporta_excel.h"

#include <xlsxwriter.h>

#include <clocale>

#include <algorithm>
#include <cmath>

#include "core/archivio_sql.h"
#include "core/dialogs.h"
#include "core/esportazione.h"
#include "store/convert.h"
#include "store/format.h"

namespace core {

namespace {

constexpr lxw_row_t kRigheFoglio = 1048576;
constexpr std::size_t kTestoMassimo = 32767;   // characters a cell holds
constexpr double kLarghezzaMassima = 80;

// Characters, not bytes, of a UTF-8 text.
std::size_t Caratteri(const std::string& s) {
    return static_cast<std::size_t>(std::count_if(s.begin(), s.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

// A cell's text cut to what a cell holds, never inside a character.
std::string TestoCella(std::string s) {
    if (s.size() <= kTestoMassimo) return s;
    std::size_t n = kTestoMassimo;
    while (n > 0 && (s[n] & 0xC0) == 0x80) --n;
    s.resize(n);
    return s;
}

enum class Genere { Importo, Intero, Data, SiNo, Testo };

Genere GenereDi(store::FieldType t) {
    switch (t) {
        case store::FieldType::Single:
        case store::FieldType::Double:
        case store::FieldType::Currency: return Genere::Importo;
        case store::FieldType::Byte:
        case store::FieldType::Integer:
        case store::FieldType::Long: return Genere::Intero;
        case store::FieldType::Date: return Genere::Data;
        case store::FieldType::Boolean: return Genere::SiNo;
        default: return Genere::Testo;
    }
}

// The writer prints numbers with the C library, which follows the machine's locale: with an
// Italian one a cell would read "49,5", which no spreadsheet takes for a number. While a workbook
// is written, this thread prints numbers with the point.
class NumeriColPunto {
public:
    NumeriColPunto() {
        if (locale_t base = duplocale(uselocale(static_cast<locale_t>(nullptr)))) {
            punto_ = newlocale(LC_NUMERIC_MASK, "C", base);
            if (!punto_) freelocale(base);
        }
        if (punto_) prima_ = uselocale(punto_);
    }
    ~NumeriColPunto() {
        if (!punto_) return;
        uselocale(prima_);
        freelocale(punto_);
    }
    NumeriColPunto(const NumeriColPunto&) = delete;
    NumeriColPunto& operator=(const NumeriColPunto&) = delete;

private:
    locale_t punto_ = nullptr;
    locale_t prima_ = nullptr;
};

class Cartella {
public:
    explicit Cartella(const std::string& percorso) {
        lxw_workbook_options opzioni{};
        opzioni.constant_memory = LXW_TRUE;
        wb_ = workbook_new_opt(percorso.c_str(), &opzioni);
        if (!wb_) throw ErroreEsportazione("Impossibile creare il file " + percorso + "!");
        ws_ = workbook_add_worksheet(wb_, nullptr);
        grassetto_ = workbook_add_format(wb_);
        format_set_bold(grassetto_);
        importo_ = workbook_add_format(wb_);
        format_set_num_format(importo_, "#,##0.00");
        data_ = workbook_add_format(wb_);
        format_set_num_format(data_, "dd/mm/yyyy");
        dataOra_ = workbook_add_format(wb_);
        format_set_num_format(dataOra_, "dd/mm/yyyy hh:mm:ss");
        ora_ = workbook_add_format(wb_);
        format_set_num_format(ora_, "hh:mm:ss");
    }
    ~Cartella() {
        if (wb_) workbook_close(wb_);   // a failed run: the temporary file goes with its owner
    }
    void Chiudi(const std::string& percorso) {
        lxw_workbook* wb = wb_;
        wb_ = nullptr;
        if (lxw_error e = workbook_close(wb); e != LXW_NO_ERROR)
            throw ErroreEsportazione("Impossibile salvare il file " + percorso + ": " + lxw_strerror(e));
    }

    lxw_worksheet* ws_ = nullptr;
    lxw_format* grassetto_ = nullptr;
    lxw_format* importo_ = nullptr;
    lxw_format* data_ = nullptr;
    lxw_format* dataOra_ = nullptr;
    lxw_format* ora_ = nullptr;

private:
    NumeriColPunto punto_;   // set before the workbook opens, kept until after it closes
    lxw_workbook* wb_ = nullptr;
};

}  // namespace

long ScriviExcel(store::Recordset& rs, const std::vector<std::string>& righeFinali, const std::string& percorso,
                 long totale) {
    FileEsportazione file(percorso, false);
    Cartella c(file.Temporaneo());
    const int campi = std::min(rs.FieldCount(), 16384);
    std::vector<Genere> generi;
    std::vector<double> larghezze;
    for (int i = 0; i < campi; ++i) {
        const std::string nome = TestoCella(rs.Fields(i).Name());
        worksheet_write_string(c.ws_, 0, static_cast<lxw_col_t>(i), nome.c_str(), c.grassetto_);
        generi.push_back(GenereDi(rs.Fields(i).Type()));
        larghezze.push_back(static_cast<double>(Caratteri(nome)) * 1.1 + 1);
    }
    worksheet_freeze_panes(c.ws_, 1, 0);

    auto avanzamento = ApriAvanzamento("Esportazione in corso...", totale);
    lxw_row_t riga = 1;
    long scritti = 0;
    for (; !rs.Eof(); rs.MoveNext(), ++riga) {
        if (riga + righeFinali.size() >= kRigheFoglio)
            throw ErroreEsportazione("Troppe righe per un foglio di lavoro: il limite è di " +
                                     std::to_string(kRigheFoglio - 1) + " righe.");
        for (int i = 0; i < campi; ++i) {
            const store::Value v = rs.Fields(i).value();
            if (v.isNull()) continue;
            const auto col = static_cast<lxw_col_t>(i);
            std::size_t lunghezza = 0;
            switch (generi[i]) {
                case Genere::Importo:
                case Genere::Intero: {
                    const double n = store::CDbl(v);
                    worksheet_write_number(c.ws_, riga, col, n, generi[i] == Genere::Importo ? c.importo_ : nullptr);
                    lunghezza = generi[i] == Genere::Importo ? store::FormatNumber(n).size() : store::NumberText(n).size();
                    break;
                }
                case Genere::Data: {
                    const double d = store::CDbl(v);
                    if (d == 0) break;
                    const bool conOra = d != std::floor(d);
                    lxw_format* f = !conOra ? c.data_ : (std::fabs(d) < 1 ? c.ora_ : c.dataOra_);
                    worksheet_write_number(c.ws_, riga, col, d, f);
                    lunghezza = f == c.data_ ? 10 : (f == c.ora_ ? 8 : 19);
                    break;
                }
                case Genere::SiNo:
                    if (store::CDbl(v) != 0) worksheet_write_string(c.ws_, riga, col, "X", nullptr);
                    lunghezza = 1;
                    break;
                case Genere::Testo: {
                    const std::string t = TestoCella(store::CStr(v));
                    if (!t.empty()) worksheet_write_string(c.ws_, riga, col, t.c_str(), nullptr);
                    lunghezza = Caratteri(t);
                    break;
                }
            }
            larghezze[i] = std::max(larghezze[i], static_cast<double>(lunghezza) + 1);
        }
        avanzamento->Passo(++scritti);
    }
    for (const std::string& finale : righeFinali) {
        const std::string t = TestoCella(finale);
        worksheet_write_string(c.ws_, riga++, 0, t.c_str(), nullptr);
    }
    for (int i = 0; i < campi; ++i)
        worksheet_set_column(c.ws_, static_cast<lxw_col_t>(i), static_cast<lxw_col_t>(i),
                             std::min(larghezze[i], kLarghezzaMassima), nullptr);
    c.Chiudi(percorso);
    file.Concludi();
    return scritti;
}

void EsportaExcel(const std::string& sql, const std::vector<std::string>& righeFinali, store::DatabasePtr database) {
    std::optional<std::string> scelto =
        dialogs().chooseFile("Salva file Excel...", "File Excel (*.xlsx)|*.xlsx", true, {});
    if (!scelto || scelto->empty()) return;
    std::string percorso = *scelto;
    auto estensione = [](std::string s) {
        std::transform(s.begin(), s.end(), s.begin(), [](unsigned char ch) { return static_cast<char>(std::tolower(ch)); });
        return s;
    };
    if (percorso.size() < 5 || estensione(percorso.substr(percorso.size() - 5)) != ".xlsx") percorso += ".xlsx";

    std::unique_ptr<store::Recordset> rs = database ? database->OpenRecordset(sql) : Apri(sql);
    if (rs->Eof()) {
        rs->Close();
        MsgBox("Nessun dato da esportare!", vbExclamation);
        return;
    }
    rs->MoveLast();
    const long totale = rs->RecordCount();
    rs->MoveFirst();
    try {
        ScriviExcel(*rs, righeFinali, percorso, totale);
    } catch (const ErroreEsportazione& e) {
        MsgBox(e.what(), vbExclamation);
        return;
    }
    rs->Close();
    ApriFile(percorso);
}

}  // namespace core
