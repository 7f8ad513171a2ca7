#include "catalogue/AppIcon.h"

#include "catalogue/files/Log.h"
#include "icons/IconLoader.h"
#include "icons/NamedImages.h"
#include "icons/SpectrumIcon.h"
#include "platform/Items.h"

#include <utility>

namespace {

// Larger than any icon is shown.
constexpr qint64 LargestSpectrum = 1024;

} // namespace

AppIcon::AppIcon(
    const IconProvider &icons, const QString &path, Owner owner, std::function<void()> changed)
    : _icons(icons)
    , _owner(std::move(owner))
    , _changed(std::move(changed))
    , _path(path)
    , _icon(NamedImages::dot())
{ }

void AppIcon::clear(const IconParameters &parameters)
{
    _colorSortParams = parameters;
    setIcon({});
}

void AppIcon::load(const QString &path, quint64 fileNumber, const IconParameters &parameters)
{
    _path = path;
    const bool isSameSize = parameters.maximumIconSize == _colorSortParams.maximumIconSize;
    if (!isSameSize || fileNumber != _fileID || _icon.isNull()) {
        _fileID = fileNumber;
        _isMeasurementDue = _isMeasurementDue || parameters != _colorSortParams;
        _colorSortParams = parameters;
        requestIcon();
    } else if (!_awaitedIcon.expired()) {
        // The icon is judged by them when it arrives; what is shown until then is a placeholder, or
        // on its way out.
        _colorSortParams = parameters;
    } else if (parameters == _colorSortParams && isMeasured()) {
        return;
    } else if (needsMeasuring(parameters)) {
        _colorSortParams = parameters;
        requestMeasurement();
    } else {
        setColorSortParameters(parameters);
    }
}

void AppIcon::requestIcon()
{
    const auto request = std::make_shared<Request>();
    _awaitedIcon = request;
    _answeredIcon.reset();
    // The answer may be there before this returns.
    IconLoader::sharedIconLoader().addOperation(
        { _path, _colorSortParams,
            [weak = weak(), request](LoadedIcon loaded) {
                const std::shared_ptr<AppIcon> icon = weak.lock();
                if (icon
                    && (icon->_awaitedIcon.lock() == request
                        || icon->_answeredIcon.lock() == request)) {
                    icon->takeIcon(std::move(loaded));
                    icon->_answeredIcon = request;
                }
            } },
        _icons);
}

// The icon is shown at once. One whose colours are known has its key at once, too; any other is
// measured when none is left to be loaded, and until then the key stays as it is.
void AppIcon::takeIcon(LoadedIcon loaded)
{
    _awaitedIcon.reset();
    if (loaded.image.isNull()) {
        setIcon({});
        return;
    }
    const bool isSameIcon = loaded.image == _icon;
    if (isSameIcon && isMeasured()) {
        return;
    }
    _icon = loaded.image;
    if (loaded.measurement.isFor(_colorSortParams)) {
        freeColorSortData();
        applyColorSortParameters(_colorSortParams, std::move(loaded.measurement));
        return;
    }
    requestMeasurement();
    if (!isSameIcon) {
        _changed();
    }
}

void AppIcon::setIcon(const QImage &icon)
{
    // One that was set waits for no other.
    _awaitedIcon.reset();
    _answeredIcon.reset();
    const bool isSameIcon = icon.isNull() ? _icon.isNull() : icon.cacheKey() == _icon.cacheKey();
    if (!isSameIcon) {
        _icon = icon;
        _isMeasurementDue = false;
        freeColorSortData();
        setColorSortParameters(_colorSortParams);
    }
}

void AppIcon::resetIconToDot()
{
    _icon = NamedImages::dot();
    _fileID = 0;
    _answeredIcon.reset();
    _isMeasurementDue = false;
}

void AppIcon::takeKept()
{
    const QImage kept = IconLoader::sharedIconLoader().kept(_icon);
    if (!kept.isNull()) {
        _icon = kept;
    }
}

// A NaN, equal to nothing, asks for a measurement each time.
bool AppIcon::needsMeasuring(const IconParameters &parameters) const
{
    return _isMeasurementDue || _hclColors.isEmpty()
        || parameters.minSaturation != _colorSortParams.minSaturation
        || parameters.minLuminosity != _colorSortParams.minLuminosity;
}

// At most one measurement is on its way: while the user drags a slider, parameters
// change faster than all icons can be measured.
void AppIcon::requestMeasurement()
{
    _isMeasurementDue = true;
    if (!_measurement.expired()) {
        return;
    }
    const auto request = std::make_shared<Request>();
    _measurement = request;
    IconLoader::sharedIconLoader().addOperation(
        { _icon, _colorSortParams,
            [weak = weak(), request](LoadedIcon measured) {
                if (const std::shared_ptr<AppIcon> icon = weak.lock()) {
                    icon->takeMeasurement(std::move(measured));
                }
            } },
        _icons);
}

void AppIcon::takeMeasurement(LoadedIcon measured)
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

void AppIcon::setColorSortParameters(const IconParameters &parameters)
{
    applyColorSortParameters(parameters, {});
}

// A measurement that was made elsewhere is taken if it answers what is asked here.
void AppIcon::applyColorSortParameters(
    const IconParameters &parameters, IconMeasurement measurement)
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
    _changed();
}

void AppIcon::pickAndSortColors()
{
    const ColorKey key = _correctedColor
        ? pickCorrectedColor(_hclColors, _colorSortParams, *_correctedColor)
        : ::pickAndSortColors(_hclColors, _colorSortParams);
    if (key.problem == ColorKey::Problem::NoColors) {
        qCWarning(lcCatalogue, "No colors passed to pick & sort method for app: %s",
            qUtf8Printable(Items::nameOf(_path)));
    } else if (key.problem == ColorKey::Problem::ZeroPixelQuantity) {
        qCWarning(
            lcCatalogue, "Zero pixel quantity for app: %s", qUtf8Printable(Items::nameOf(_path)));
    }
    _colorSortValue = key.colorSortValue;
    _sortedColors = key.sortedColors;
}

QList<MeasuredColor> AppIcon::measuredColors() const
{
    QList<MeasuredColor> colors;
    for (const HclColor &color : _hclColors) {
        colors.append(
            { shownColor(color), color.saturation < double(_colorSortParams.minSaturation) });
    }
    return colors;
}

void AppIcon::setCorrectedColor(const std::optional<SortedColor> &color)
{
    const bool isSame =
        color && _correctedColor ? color->looksLike(*_correctedColor) : !color && !_correctedColor;
    if (isSame) {
        return;
    }
    _correctedColor = color;
    // One that is on its way is judged when it arrives.
    if (!_icon.isNull() && hasMeasurement()) {
        pickAndSortColors();
        _changed();
    }
}

void AppIcon::freeColorSortData()
{
    _hclColors = {};
    _hclColorCount = IconMeasurement::ColorCount;
    _sortedColors = {};
    _colorSortValue = ColorKey::Unknown;
}

QImage AppIcon::spectrumIcon() const
{
    const qint64 size = qMin(_colorSortParams.maximumIconSize, LargestSpectrum);
    const QImage picture = ::spectrumIcon(_sortedColors, int(qMax<qint64>(0, size)));
    return picture.isNull() ? _icon : picture;
}
