// The report engine as the print screen drives it: the file, the company, the archive and the scratch
// file, the folders; the sub-reports and parameters the file declares, by name, for the caller to fill;
// then a preview, a PDF or the printer. Copying and deleting a layout belong to the screen, which
// knows the list of layouts.
#pragma once

#include <string>
#include <vector>

#include "store/dao.h"
#include "ui/report/Impaginazione.h"
#include "ui/report/Modello.h"

class QPagedPaintDevice;
class QWidget;

namespace ui::report {

class Motore {
public:
    std::string File;               // full path of the report file
    long Azienda = 0;               // the current company's ID
    std::string Archivio;           // full path of the archive
    std::string Scratch;            // full path of temp.mdb
    std::string CartellaDati;       // folder of the master file
    std::string CartellaAzienda;    // the company's own folder
    std::string CartellaImmagini;   // where the layouts' pictures lie
    // The open archive and scratch file; when unset, Archivio and Scratch are opened for the run.
    store::DatabasePtr dbArchivio;
    store::DatabasePtr dbTemp;
    // The master file, for the company's own data; when unset, Aziende.mdb of CartellaDati.
    store::DatabasePtr dbAziende;

    // Reads File; what it declares becomes SubReports() and Parametri(). A failed load leaves the
    // file as it was and the engine with nothing loaded.
    void Carica();
    bool Caricato() const { return caricato_; }
    std::vector<SubReportDichiarato>& SubReports() { return modello_.subReports; }
    // The declared sub-report of that name (without case); error 3265 naming the file when there is none.
    SubReportDichiarato& SubReport(const std::string& nome);
    std::vector<ParametroDichiarato>& Parametri() { return modello_.parametri; }
    const Modello& modello() const { return modello_; }
    std::string NomeFile() const;

    // The databases the statements of modello read, those not already open opened for the run: the
    // master file only when a sub-report reads it.
    struct Archivi {
        store::DatabasePtr archivio, temp, aziende;
    };
    Archivi Apri(const Modello& modello) const;

    // Runs the statements and lays the pages out.
    Documento Prepara(const Misuratore& misuratore) const;
    Documento Prepara() const;

    // Shows the preview (frmAnteprima) modally over parent.
    void Anteprima(QWidget* parent = nullptr) const;
    void EsportaPdf(const std::string& percorso) const;
    void Stampa(QPagedPaintDevice& stampante) const;

private:
    Modello modello_;
    bool caricato_ = false;
};

}  // namespace ui::report
