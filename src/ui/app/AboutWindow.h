// "Informazioni su Mirtex++": the program's name, its version (the build's) and what it is.
#pragma once

#include <QDialog>

namespace mirtex {

class AboutWindow : public QDialog
{
    Q_OBJECT

public:
    explicit AboutWindow(QWidget *parent = nullptr);
};

} // namespace mirtex
