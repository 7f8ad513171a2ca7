#include "catalogue/OTAppManager.h"
#include "commands/Commands.h"
#include "commands/ContactSheet.h"
#include "commands/Output.h"
#include "icons/IconMeasurement.h"
#include "platform/Desktop.h"

#include <QFileInfo>

#include <unistd.h>

namespace {

constexpr int LargestSize = int(IconParameters::LargestIconSize);

IconParameters parametersFor(const ColorOptions &options)
{
    IconParameters parameters = OTAppManager::iconParameters();
    const auto set = [](float &parameter, const std::optional<double> &option) {
        parameter = option ? float(*option) : parameter;
    };
    set(parameters.grayThreshold, options.grayThreshold);
    set(parameters.wrapHue, options.wrapHue);
    set(parameters.minSaturation, options.minSaturation);
    set(parameters.minLuminosity, options.minLuminosity);
    parameters.graysBySecondaryColor |= options.graysBySecondaryColor;
    return parameters;
}

void fail(MeasuredFile &measured, const QString &error)
{
    measured.error = error;
    Output::fail(QStringLiteral("%1: %2").arg(measured.file, error));
}

// The picture as it is measured; null, after one line, when there is none. A picture with pixels of
// its own is not scaled unless a size was asked for or it is too large.
QImage pictureOf(MeasuredFile &measured, const IconParameters &parameters,
    const ColorOptions &options, Desktop &desktop)
{
    const QString path = QFileInfo(measured.file).absoluteFilePath();
    // First of all: asking for the flags of a broken application would log why it is broken.
    if (const QString refusal = desktop.items().refusal(path); !refusal.isEmpty()) {
        fail(measured, refusal);
        return {};
    }
    const IconProvider &icons = desktop.icons();
    const int size = options.size.value_or(parameters.iconSize());
    int largestStored = options.size ? 0 : LargestSize;
    IconSource source { path };
    if (desktop.items().flagsOf(path).isApplication) {
        largestStored = 0;
        measured.title = desktop.items().displayName(path);
        source = icons.resolve(path, size);
        if (source.isNull()) {
            fail(measured, QStringLiteral("the application has no icon"));
            return {};
        }
    }
    QString problem;
    QImage picture = icons.tryDecode(source, size, largestStored, &problem);
    if (picture.isNull()) {
        fail(measured,
            source.file == path ? problem
                                : QStringLiteral("its icon %1: %2").arg(source.file, problem));
    }
    return picture;
}

MeasuredFile measure(const QString &file, const IconParameters &parameters,
    const ColorOptions &options, Desktop &desktop)
{
    MeasuredFile measured;
    measured.file = file;
    measured.title = QFileInfo(file).fileName();
    if (!QFileInfo::exists(file)) {
        fail(measured,
            file.contains(QChar::ReplacementCharacter)
                ? QStringLiteral("its name is not valid text")
                : QStringLiteral("no such file"));
        return measured;
    }
    measured.icon = pictureOf(measured, parameters, options, desktop);
    if (measured.error.isEmpty()) {
        const qsizetype count = options.count.value_or(IconMeasurement::ColorCount);
        IconMeasurement measurement = measureIcon(measured.icon, parameters, count,
            options.deltaE.value_or(IconMeasurement::AlikeDistance));
        measured.colors = std::move(measurement.colors);
        if (measured.colors.isEmpty() && count > 0) {
            // No failure, but what measuring writes about it does not name the file.
            Output::remark(QStringLiteral("%1: no colours").arg(file));
        }
        measured.key = pickAndSortColors(measured.colors, parameters);
    }
    return measured;
}

MeasuredFiles::Blocks blocksForOutput()
{
    const bool isColored = isatty(STDOUT_FILENO) != 0 && qEnvironmentVariableIsEmpty("NO_COLOR");
    return isColored ? MeasuredFiles::Blocks::Colored : MeasuredFiles::Blocks::Absent;
}

// False when standard output takes no more.
bool print(const MeasuredFile &measured, const Invocation &invocation)
{
    if (invocation.isJson) {
        return Output::print(MeasuredFiles::jsonLine(measured));
    }
    if (!measured.error.isEmpty() || !invocation.sheet.isEmpty()) {
        return true;
    }
    return Output::print(MeasuredFiles::textLine(measured, blocksForOutput()));
}

} // namespace

int Commands::colors(const Invocation &invocation, Desktop &desktop)
{
    const IconParameters parameters = parametersFor(invocation.colors);
    std::vector<MeasuredFile> files;
    int exitCode = 0;
    for (const QString &file : invocation.files) {
        MeasuredFile measured = measure(file, parameters, invocation.colors, desktop);
        exitCode = measured.error.isEmpty() ? exitCode : 1;
        if (!print(measured, invocation)) {
            return 1;
        }
        // Pictures of many files are kept only to be drawn.
        if (!invocation.sheet.isEmpty()) {
            files.push_back(std::move(measured));
        }
    }
    if (invocation.sheet.isEmpty()) {
        return exitCode;
    }
    const QImage sheet = contactSheet(files);
    if (sheet.isNull()) {
        return Output::fail(QStringLiteral("there is nothing that fits on a sheet"));
    }
    return std::max(exitCode, Output::writePicture(sheet, invocation.sheet));
}
