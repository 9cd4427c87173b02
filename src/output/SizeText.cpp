#include "output/SizeText.h"

namespace lumirra {

QString SizeText(long long bytes) {
    if (bytes < 1000) {
        return QStringLiteral("%1 bytes").arg(bytes);
    }
    const bool kilo = bytes < 999'500;
    const double value = static_cast<double>(bytes) / (kilo ? 1e3 : 1e6);
    const int decimals = value < 10 ? 2 : value < 100 ? 1 : 0;
    return QStringLiteral("%1 %2").arg(QString::number(value, 'f', decimals),
                                       kilo ? QStringLiteral("KB") : QStringLiteral("MB"));
}

}  // namespace lumirra
