#include "output/formreport.h"

#include <filesystem>

#include "core/record.h"
#include "core/varie.h"
#include "store/convert.h"
#include "store/errors.h"

namespace output {
namespace {

namespace fs = std::filesystem;

bool finisceConRpf(const std::string& nome) {
    return nome.size() >= 4 && store::AsciiLower(nome.substr(nome.size() - 4)) == ".rpf";
}

}  // namespace

std::string SqlElencoReport(const std::string& sezione, long idAzienda) {
    return "Select * from FormReport where Sezione='" + core::Apici(sezione) + "' And Azienda=" +
           std::to_string(idAzienda) + " order by Predefinito";
}

void ImpostaPredefinito(store::Database& master, const std::string& sezione, long idAzienda, long id) {
    master.Execute("Update FormReport set Predefinito=False where Sezione='" + core::Apici(sezione) +
                   "' and Azienda=" + std::to_string(idAzienda));
    master.Execute("Update FormReport set Predefinito=True where ID=" + std::to_string(id));
}

std::optional<std::string> NomeNonValido(const std::string& nome) {
    for (unsigned char c : nome)
        if (c < 32 || std::string_view("\\/:*?\"<>|").find(static_cast<char>(c)) != std::string_view::npos)
            return "Il nome \"" + nome + "\" contiene caratteri che un nome di file non può avere ( \\ / : * ? \" < > | ).";
    const std::string t = core::Trim(nome);
    if (!t.empty() && (t == "." || t == ".." || t.back() == '.'))
        return "Il nome \"" + nome + "\" non può essere il nome di un file.";
    return std::nullopt;
}

std::string NomeFileReport(const std::string& nome) {
    const std::string t = core::Trim(nome);
    return finisceConRpf(t) ? t : t + ".rpf";
}

EsitoDuplica DuplicaReport(store::DatabasePtr master, const std::string& cartella, long id, const std::string& nome) {
    if (core::Trim(nome).empty()) return {};
    if (auto motivo = NomeNonValido(core::Trim(nome))) return {0, *motivo};
    const std::string nuovo = NomeFileReport(nome);
    auto rs = master->OpenRecordset("Select * from FormReport where ID=" + std::to_string(id));
    if (rs->Eof()) return {0, "Il report scelto non è più nell'elenco."};
    const std::string vecchio = store::ConcatText(rs->get("Report"));
    const long azienda = store::CLng(rs->get("Azienda"));
    const std::string sezione = store::ConcatText(rs->get("Sezione"));
    rs->Close();
    std::error_code ec;
    const fs::path origine = fs::path(cartella) / vecchio, destinazione = fs::path(cartella) / nuovo;
    auto esisteRiga = master->OpenRecordset("Select ID from FormReport where Azienda=" + std::to_string(azienda) +
                                            " and Report='" + core::Apici(nuovo) + "'");
    if (fs::exists(destinazione, ec) || !esisteRiga->Eof())
        return {0, "Esiste già un report di nome \"" + nuovo + "\": scegliere un altro nome."};
    esisteRiga->Close();
    if (!fs::is_regular_file(origine, ec)) return {0, "Il file del report \"" + vecchio + "\" non esiste: non si può copiare."};
    fs::copy_file(origine, destinazione, ec);
    if (ec) return {0, "Il report \"" + nuovo + "\" non si può scrivere: " + ec.message() + "."};
    const long nuovoId = core::ProssimoID("FormReport", master);
    master->Execute("Insert Into FormReport (ID,Azienda,Sezione,Report,Predefinito) VALUES (" + std::to_string(nuovoId) +
                    "," + std::to_string(azienda) + ",'" + core::Apici(sezione) + "','" + core::Apici(nuovo) + "',0)");
    return {nuovoId, {}};
}

void EliminaReport(store::Database& master, const std::string& cartella, long id) {
    auto rs = master.OpenRecordset("Select Report from FormReport where ID=" + std::to_string(id));
    if (!rs->Eof()) {
        const std::string file = store::ConcatText(rs->get("Report"));
        std::error_code ec;
        if (!file.empty()) fs::remove(fs::path(cartella) / file, ec);
    }
    rs->Close();
    master.Execute("Delete From FormReport where ID=" + std::to_string(id));
}

Assegnazioni Assegna(const Dichiarazioni& dichiarate, const core::RichiestaStampa& richiesta, const std::string& nomeFile) {
    auto errore = [&](const std::string& testo) -> store::JetError {
        return store::JetError(store::err::ElementoNonTrovato, nomeFile + ": " + testo);
    };
    Assegnazioni a;
    if (richiesta.subReports.Count() > 0) {
        for (const auto& dich : dichiarate.subReports) {
            const core::SubReport* passato = richiesta.subReports.Item(dich.nome);
            if (!passato) throw errore("il sub-report " + dich.nome + " dichiarato dal report non è tra quelli passati");
            Assegnazioni::Sub s{dich.nome, std::nullopt, {}};
            if (!core::Trim(passato->Query).empty()) s.query = passato->Query;
            for (const auto& nome : dich.parametri) {
                const core::Parametro* p = passato->parametri.PerNome(nome);
                if (!p) throw errore("il parametro " + nome + " del sub-report " + dich.nome + " non è tra quelli passati");
                s.parametri.emplace_back(nome, p->Valore);
            }
            a.subReports.push_back(std::move(s));
        }
    }
    if (richiesta.parametri.Count() > 0) {
        for (const auto& nome : dichiarate.parametri) {
            const core::Parametro* p = richiesta.parametri.PerNome(nome);
            if (!p) throw errore("il parametro " + nome + " dichiarato dal report non è tra quelli passati");
            a.parametri.emplace_back(nome, p->Valore);
        }
    }
    return a;
}

}  // namespace output
