#include "app/main_window.h"
#include "app/qt_settings_store.h"
#include "app/texts.h"

#include <QApplication>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    tarvo::QtSettingsStore settings;
    tarvo::MainWindow window(settings);
    window.show();
    return QApplication::exec();
}
