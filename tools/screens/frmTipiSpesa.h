// Expense kinds and expense classes: the registers and editors of their code tables.
#pragma once

#include "tools/screens/TabellaDescrizioni.h"

const TabellaDescrizioni& TipiSpesa();
const TabellaDescrizioni& ClassificazioniSpese();

class frmTipiSpesa : public RegistroDescrizioni {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmTipiSpesa";
    explicit frmTipiSpesa(QWidget* parent = nullptr) : RegistroDescrizioni(TipiSpesa(), parent) {}
};

class frmTipiSpesaEdita : public EditorDescrizioni {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmTipiSpesaEdita";
    explicit frmTipiSpesaEdita(QWidget* parent = nullptr) : EditorDescrizioni(TipiSpesa(), parent) {}
};

class frmClassificazioniSpese : public RegistroDescrizioni {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClassificazioniSpese";
    explicit frmClassificazioniSpese(QWidget* parent = nullptr) : RegistroDescrizioni(ClassificazioniSpese(), parent) {}
};

class frmClassificazioniSpeseEdita : public EditorDescrizioni {
    Q_OBJECT
public:
    static constexpr const char* Nome = "frmClassificazioniSpeseEdita";
    explicit frmClassificazioniSpeseEdita(QWidget* parent = nullptr)
        : EditorDescrizioni(ClassificazioniSpese(), parent) {}
};
