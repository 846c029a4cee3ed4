#include "ui/report/Motore.h"

#include <filesystem>

#include "ui/Dialoghi.h"
#include "ui/report/Anteprima.h"
#include "ui/report/Pittore.h"

namespace ui::report {

void Motore::Carica() {
    caricato_ = false;
    modello_ = Modello{};
    modello_ = report::Carica(File);
    caricato_ = true;
}

SubReportDichiarato& Motore::SubReport(const std::string& nome) {
    SubReportDichiarato* s = modello_.subReport(nome);
    if (!s) throw ErroreReport(ErrNomeMancante, NomeFile() + ": il report non dichiara il sub-report " + nome);
    return *s;
}

std::string Motore::NomeFile() const { return std::filesystem::path(File).filename().string(); }

Motore::Archivi Motore::Apri(const Modello& modello) const {
    auto apri = [](const store::DatabasePtr& aperto, const std::string& percorso) {
        if (aperto || percorso.empty()) return aperto;
        return store::Workspace::Default().OpenDatabase(percorso, false, true);
    };
    bool leggeAziende = false;
    for (const auto& sub : modello.subReports) leggeAziende = leggeAziende || sub.database == report::Archivio::Aziende;
    Archivi a;
    a.archivio = apri(dbArchivio, Archivio);
    a.temp = apri(dbTemp, Scratch);
    a.aziende = leggeAziende && !CartellaDati.empty()
                    ? apri(dbAziende, (std::filesystem::path(CartellaDati) / "Aziende.mdb").string())
                    : dbAziende;
    return a;
}

Documento Motore::Prepara(const Misuratore& misuratore) const {
    if (!caricato_) throw ErroreReport(91, NomeFile() + ": il report non è stato caricato");
    const Archivi a = Apri(modello_);
    const Dati dati = CaricaDati(modello_, a.archivio.get(), a.temp.get(), NomeFile(), Azienda, a.aziende.get());
    return Impagina(modello_, dati, misuratore, CartellaImmagini, NomeFile());
}

Documento Motore::Prepara() const { return Prepara(MisuratoreQt()); }

void Motore::Anteprima(QWidget* parent) const {
    const Documento doc = Prepara();
    frmAnteprima anteprima(doc, NomeFile(), parent);
    eseguiModale(&anteprima, [&] { return anteprima.exec() == 1; });
}

void Motore::EsportaPdf(const std::string& percorso) const {
    const Documento doc = Prepara();
    Pittore(doc, NomeFile()).esportaPdf(percorso);
}

void Motore::Stampa(QPagedPaintDevice& stampante) const {
    const Documento doc = Prepara();
    Pittore(doc, NomeFile()).stampa(stampante);
}

}  // namespace ui::report
