// The figures the payments editors show beside their picks (what is scheduled or paid, what is
// left): a framed label of fixed width, right-aligned as amounts are.
#pragma once

#include <QLabel>

inline QLabel* cifra(const char* nome, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(nome);
    l->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    l->setFrameShape(QFrame::StyledPanel);
    l->setFixedWidth(120);
    return l;
}
