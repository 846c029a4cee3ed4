// The statement routine as the registers of customers and suppliers reach it. It belongs to the
// books, above both areas: the books install it when their screens are registered, and a register
// asks for it here without including the books. With nothing installed the call does nothing.
#pragma once

#include <functional>
#include <string>

#include "core/stampa.h"

namespace core {

// intestatario, tipo (0 customer, 1 supplier), soloAperte, dal, al (0 for no date), gruppi.
using GeneratoreEstratto = std::function<void(long, long, bool, double, double, bool)>;

void installaGeneraEstratto(GeneratoreEstratto generatore);
void GeneraEstratto(long intestatario, long tipo, bool soloAperte, double dal, double al, bool gruppi);

// The heading of a printed statement, from the register's current row.
struct IntestazioneEstratto {
    std::string denominazione;    // the name fields joined with " "
    std::string indirizzo;
    std::string cap, citta, provincia;
    std::string partitaIva;
};

// Section Estratto: sub-report Elenco on the statement of kind tipo in the grid's order, and the
// heading as its parameters (Recapito is Cap, Citta and Provincia joined with " ").
RichiestaStampa StampaEstratto(long tipo, const IntestazioneEstratto& intestazione);

}  // namespace core
