// A drop-down over a statement, with several columns and headings in its list. Its value is the
// bound column of the chosen row (the ID), its text the text column. An open combo also takes free
// text, and then its value is that text.
#pragma once

#include <QComboBox>
#include <QVariant>

#include <string>
#include <vector>

#include "store/dao.h"

class QStandardItemModel;

namespace ui {

class VetraCombo : public QComboBox {
    Q_OBJECT
public:
    struct ColonnaLista {
        std::string campo;
        std::string titolo;
        int larghezza = 0;     // twips; 0 fits the contents
        std::string maschera{};
    };

    explicit VetraCombo(QWidget* parent = nullptr);

    // The field it is bound to, kept as the control's "CampoDestinazione" property for the binding walk.
    void setCampoDestinazione(const std::string& campo) { setProperty("CampoDestinazione", QString::fromStdString(campo)); }
    std::string campoDestinazione() const { return property("CampoDestinazione").toString().toStdString(); }

    // The database of the source; unset, the open archive.
    void setDatabase(store::DatabasePtr db) { db_ = std::move(db); }
    void setSorgente(const std::string& sql) { sorgente_ = sql; }
    const std::string& sorgente() const { return sorgente_; }
    void setColonne(std::vector<ColonnaLista> colonne);
    void setCampoValore(const std::string& campo) { campoValore_ = campo; }   // "ID" unless told
    void setCampoTesto(const std::string& campo) { campoTesto_ = campo; }     // the first column unless told
    void setAperta(bool aperta);   // free text allowed
    bool aperta() const { return isEditable(); }

    // Reruns the source and keeps the value chosen, when it is still in the list.
    void Aggiorna();
    // Lists filled by the program rather than by a statement.
    void pulisci();
    void aggiungiVoce(const store::Value& valore, const std::string& testo);

    // Null when no row is chosen (an open combo gives its text, Null when blank).
    store::Value valore() const;
    // Chooses the row whose value equals v; a value with no row leaves nothing chosen.
    void setValore(const store::Value& v);
    std::string testo() const;
    void setTesto(const std::string& t);
    // Another column of the chosen row (Null with no row).
    store::Value campo(const std::string& nome) const;

signals:
    void valoreCambiato();

private:
    void riempi(store::Recordset& rs);
    void prendiColonne(store::Recordset& rs);
    void aggiungiRiga(store::Recordset& rs, bool testoNascosto);
    void dimensionaLista();
    int rigaDelValore(const store::Value& v) const;

    store::DatabasePtr db_;
    std::string sorgente_;
    std::vector<ColonnaLista> colonne_;
    std::string campoValore_ = "ID";
    std::string campoTesto_;
    std::vector<std::string> campiRiga_;
    std::vector<std::vector<store::Value>> righe_;   // all listed fields per row
    QStandardItemModel* lista_;
};

// The id a linked choice holds: 0 when nothing is chosen.
long IdDi(const store::Value& v);

}  // namespace ui
