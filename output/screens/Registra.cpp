#include "output/screens/Registra.h"

#include <QDesktopServices>
#include <QUrl>

#include "core/esportazione.h"
#include "core/registro_schermi.h"
#include "core/stampa.h"
#include "output/screens/frmEsportaElenchi.h"
#include "output/screens/frmEsportaFatture.h"
#include "output/screens/frmStampa.h"
#include "ui/Dialoghi.h"
#include "ui/Progresso.h"

namespace {

// The progress box of an export, shown while it lives.
class AvanzamentoSchermo : public core::Avanzamento {
public:
    AvanzamentoSchermo(const std::string& testo, long totale) : progresso_(testo, ui::finestraPrincipale()), totale_(totale) {
        progresso_.setMassimo(static_cast<int>(totale));
        progresso_.avanza(0, testo + " (" + std::to_string(totale) + ")");
        progresso_.show();
    }
    void Passo(long fatti) override {
        if (fatti % 256 == 0 || fatti == totale_) progresso_.avanza(static_cast<int>(fatti));
    }

private:
    ui::Progresso progresso_;
    long totale_;
};

}  // namespace

void RegistraSchermiOutput() {
    core::installaStampa(MostraStampa);
    core::registraSchermo(frmEsportaFatture::Nome, ui::MostraSchermo<frmEsportaFatture>);
    core::registraSchermo(frmEsportaElenchi::Nome, ui::MostraSchermo<frmEsportaElenchi>);
    core::installaAvanzamento([](const std::string& testo, long totale) -> std::unique_ptr<core::Avanzamento> {
        return std::make_unique<AvanzamentoSchermo>(testo, totale);
    });
    core::installaApriFile([](const std::string& percorso) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(percorso)));
    });
}
