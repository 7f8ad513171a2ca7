// The icon of an application, and the colours by which it is ordered.
//
// It is loaded and measured on other threads and changes on the main thread only. An icon whose
// owner has ended takes no answer any more.

#pragma once

#include "icons/ColorKey.h"
#include "icons/IconMeasurement.h"
#include "icons/IconParameters.h"

#include <QImage>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class IconProvider;
struct LoadedIcon;

class AppIcon final
{
public:
    // What the icon is part of, and lives as long as; null when that is not shared.
    using Owner = std::function<std::shared_ptr<void>()>;
    // The icon of the bundle at a path, not loaded yet. `changed` is called when image or colours
    // may be others than before. The provider must outlive the icon and what it has asked for.
    AppIcon(
        const IconProvider &icons, const QString &path, Owner owner, std::function<void()> changed);
    Q_DISABLE_COPY_MOVE(AppIcon)

    // A placeholder until an icon has been loaded; null when there is none.
    const QImage &image() const { return _icon; }
    // Loads the icon of the bundle at a path, whose file has this number; when the same file was
    // loaded at the same size before, only its colours are judged afresh, and measured afresh, on
    // another thread, where that is needed.
    void load(const QString &path, quint64 fileNumber, const IconParameters &parameters);
    // There is no icon, but these parameters hold for the next one.
    void clear(const IconParameters &parameters);
    // Measures the icon at once, unless it is the one shown. Null: no icon.
    void setIcon(const QImage &icon);
    // Shows the placeholder until the next load. Not announced.
    void resetIconToDot();
    // Shows none until the next load. Not announced.
    void forgetIcon() { _icon = {}; }
    // Exchanges the icon for the same one among those kept for later runs, if it is kept. Not
    // announced.
    void takeKept();
    // The next load() loads the icon again; until it arrives the present one stays.
    void forgetIconSource() { _fileID = 0; }

    const IconParameters &parameters() const { return _colorSortParams; }
    // Judges the colours by these parameters, measuring them first where the judgement needs that.
    // Always announced.
    void setColorSortParameters(const IconParameters &parameters);
    // Forgets what was measured; the key is then unknown.
    void freeColorSortData();
    // Where the icon stands in the order by colour; ColorKey::Unknown when it cannot be told.
    double colorSortValue() const { return _colorSortValue; }
    // The icon's colours, the main one first; empty when they are not known.
    const SortedColors &sortedColors() const { return _sortedColors; }
    // What was measured, by falling weight; empty when that is not known.
    QList<MeasuredColor> measuredColors() const;
    // The colour that counts in place of those, whatever the icon is; none when they count.
    const std::optional<SortedColor> &correctedColor() const { return _correctedColor; }
    // Announced when it has changed where the icon stands.
    void setCorrectedColor(const std::optional<SortedColor> &color);
    // A picture of the sorted colours; the icon, which may be null, when there are none.
    QImage spectrumIcon() const;

private:
    struct Request
    { };

    std::weak_ptr<AppIcon> weak() { return std::shared_ptr<AppIcon>(_owner(), this); }
    void requestIcon();
    void takeIcon(LoadedIcon loaded);
    void requestMeasurement();
    void takeMeasurement(LoadedIcon measured);
    void applyColorSortParameters(const IconParameters &parameters, IconMeasurement measurement);
    // What has no colours was measured all the same.
    bool hasMeasurement() const { return _hclColors.size() == size_t(_hclColorCount); }
    bool isMeasured() const { return !_isMeasurementDue && hasMeasurement(); }
    bool needsMeasuring(const IconParameters &parameters) const;
    void pickAndSortColors();

    const IconProvider &_icons;
    Owner _owner;
    std::function<void()> _changed;
    QString _path;
    QImage _icon;
    quint64 _fileID = 0;
    // What the icon waits for. A request lives as long as it may be answered, so it is gone when
    // the loader was told to drop everything; the answer to an older one does not count.
    std::weak_ptr<Request> _awaitedIcon;
    // Whose answer is shown, while that may be followed by a better one.
    std::weak_ptr<Request> _answeredIcon;
    std::weak_ptr<Request> _measurement;
    // What was measured, or is being measured, may be out of date.
    bool _isMeasurementDue = false;
    HclColors _hclColors;
    // Of the colours; how many to ask for while there are none.
    qsizetype _hclColorCount = IconMeasurement::ColorCount;
    IconParameters _colorSortParams;
    std::optional<SortedColor> _correctedColor;
    SortedColors _sortedColors;
    double _colorSortValue = ColorKey::Unknown;
};
