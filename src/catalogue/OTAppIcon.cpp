// The part of an application that sees to its icon and to the icon's colours.

#include "catalogue/Log.h"
#include "catalogue/OTApp.h"
#include "icons/IconLoader.h"
#include "icons/NamedImages.h"
#include "icons/SpectrumIcon.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"

#include <utility>

namespace {

// Larger than any icon is shown.
constexpr qint64 LargestSpectrum = 1024;

} // namespace

QImage OTApp::icon() const
{
    return _icon.isNull() ? NamedImages::notfound() : _icon;
}

void OTApp::setIconParameters(const IconParameters &parameters)
{
    refreshName();
    QString error;
    const std::optional<quint64> fileNumber = Items::fileNumberOf(_path, &error);
    _pathIsValid = fileNumber.has_value();
    if (fileNumber) {
        loadIconOfFile(*fileNumber, parameters);
    } else {
        _colorSortParams = parameters;
        setIcon({});
    }
}

void OTApp::loadIconWithParameters(const IconParameters &parameters)
{
    QString error;
    const std::optional<quint64> fileNumber = Items::fileNumberOf(_path, &error);
    if (fileNumber) {
        loadIconOfFile(*fileNumber, parameters);
    } else {
        qCWarning(lcCatalogue, "%s", qUtf8Printable(error));
        _colorSortParams = parameters;
        setIcon({});
    }
}

void OTApp::loadIconOfFile(quint64 fileNumber, const IconParameters &parameters)
{
    const bool isSameSize = parameters.maximumIconSize == _colorSortParams.maximumIconSize;
    if (!isSameSize || fileNumber != _fileID || _icon.isNull()) {
        _fileID = fileNumber;
        _colorSortParams = parameters;
        requestIcon();
    } else if (!_awaitedIcon.expired()) {
        // The icon is judged by them when it arrives; what is shown until then is a placeholder, or
        // on its way out.
        _colorSortParams = parameters;
    } else if (needsMeasuring(parameters)) {
        _colorSortParams = parameters;
        requestMeasurement();
    } else {
        setColorSortParameters(parameters);
    }
}

void OTApp::requestIcon()
{
    const auto request = std::make_shared<Request>();
    _awaitedIcon = request;
    IconLoader::sharedIconLoader().addOperation(
        { _path, _colorSortParams,
            [weak = weak_from_this(), request](const LoadedIcon &loaded) {
                const AppRef app = weak.lock();
                if (app && app->_awaitedIcon.lock() == request) {
                    app->takeIcon(loaded.image);
                }
            } },
        _desktop.icons());
}

// The icon is shown at once and measured when none is left to be loaded; until then the entry keeps
// the key that it has.
void OTApp::takeIcon(const QImage &icon)
{
    _awaitedIcon.reset();
    if (icon.isNull()) {
        setIcon({});
        return;
    }
    const bool isSameIcon = icon.cacheKey() == _icon.cacheKey();
    _icon = icon;
    requestMeasurement();
    if (!isSameIcon) {
        Q_EMIT NotificationCenter::defaultCenter().N_AppIconChanged(shared_from_this());
    }
}

void OTApp::setIcon(const QImage &icon)
{
    // An application whose icon was set waits for no other one.
    _awaitedIcon.reset();
    const bool isSameIcon = icon.isNull() ? _icon.isNull() : icon.cacheKey() == _icon.cacheKey();
    if (!isSameIcon) {
        _icon = icon;
        _isMeasurementDue = false;
        freeColorSortData();
        setColorSortParameters(_colorSortParams);
    }
}

void OTApp::resetIconToDot()
{
    _icon = NamedImages::dot();
    _fileID = 0;
    _isMeasurementDue = false;
}

// A NaN, equal to nothing, asks for a measurement each time.
bool OTApp::needsMeasuring(const IconParameters &parameters) const
{
    return _isMeasurementDue || _hclColors.isEmpty()
        || parameters.minSaturation != _colorSortParams.minSaturation
        || parameters.minLuminosity != _colorSortParams.minLuminosity;
}

// At most one measurement of an entry is on its way: while the user drags a slider, parameters
// change faster than all icons can be measured.
void OTApp::requestMeasurement()
{
    _isMeasurementDue = true;
    if (!_measurement.expired()) {
        return;
    }
    const auto request = std::make_shared<Request>();
    _measurement = request;
    IconLoader::sharedIconLoader().addOperation(
        { _icon, _colorSortParams,
            [weak = weak_from_this(), request](LoadedIcon measured) {
                if (const AppRef app = weak.lock()) {
                    app->takeMeasurement(std::move(measured));
                }
            } },
        _desktop.icons());
}

void OTApp::takeMeasurement(LoadedIcon measured)
{
    _measurement.reset();
    if (!_isMeasurementDue) {
        return;
    }
    const bool isOfThisIcon = measured.image.cacheKey() == _icon.cacheKey();
    if (isOfThisIcon && measured.measurement.isFor(_colorSortParams)) {
        freeColorSortData();
        applyColorSortParameters(_colorSortParams, std::move(measured.measurement));
    } else {
        requestMeasurement();
    }
}

void OTApp::setColorSortParameters(const IconParameters &parameters)
{
    applyColorSortParameters(parameters, {});
}

// A measurement that was made elsewhere is taken if it answers what is asked here.
void OTApp::applyColorSortParameters(const IconParameters &parameters, IconMeasurement measurement)
{
    const bool measures = needsMeasuring(parameters);
    const bool picks = measures || parameters.grayThreshold != _colorSortParams.grayThreshold
        || parameters.wrapHue != _colorSortParams.wrapHue
        || parameters.graysBySecondaryColor != _colorSortParams.graysBySecondaryColor;
    _colorSortParams = parameters;
    if (_icon.isNull() || measures) {
        freeColorSortData();
    }
    if (!_icon.isNull() && measures) {
        if (!measurement.isFor(parameters)) {
            measurement = measureIcon(_icon, parameters, _hclColorCount);
        }
        _isMeasurementDue = false;
        _hclColors = std::move(measurement.colors);
        _hclColorCount = qsizetype(_hclColors.size());
    }
    if (!_icon.isNull() && picks) {
        pickAndSortColors();
    }
    Q_EMIT NotificationCenter::defaultCenter().N_AppIconChanged(shared_from_this());
}

void OTApp::pickAndSortColors()
{
    const ColorKey key = ::pickAndSortColors(_hclColors, _colorSortParams);
    if (key.problem == ColorKey::Problem::NoColors) {
        qCWarning(lcCatalogue, "No colors passed to pick & sort method for app: %s",
            qUtf8Printable(name()));
    } else if (key.problem == ColorKey::Problem::ZeroPixelQuantity) {
        qCWarning(lcCatalogue, "Zero pixel quantity for app: %s", qUtf8Printable(name()));
    }
    _colorSortValue = key.colorSortValue;
    setSortedColors(key.sortedColors);
}

SortedColors OTApp::colorArrayForPrimaryIndex(
    qsizetype primaryIndex, qsizetype secondaryIndex, qsizetype grayIndex) const
{
    return ::colorArrayForPrimaryIndex(_hclColors, primaryIndex, secondaryIndex, grayIndex);
}

void OTApp::freeColorSortData()
{
    _hclColors = {};
    _hclColorCount = IconMeasurement::ColorCount;
    setSortedColors({});
    _colorSortValue = ColorKey::Unknown;
}

QImage OTApp::spectrumIcon() const
{
    const qint64 size = qMin(_colorSortParams.maximumIconSize, LargestSpectrum);
    const QImage picture = ::spectrumIcon(_sortedColors, int(qMax<qint64>(0, size)));
    return picture.isNull() ? _icon : picture;
}
