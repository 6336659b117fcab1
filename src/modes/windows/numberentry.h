#pragma once

class QString;

namespace spectrane {

class MainWindow;
class NumberField;

/// The number in `field`, which an empty field takes from its placeholder. False: the text is no number; the
/// person was told and stands in front of the field, and `value` is as it was. Yields.
bool TakeNumber(MainWindow& frame, NumberField& field, double& value);

/// The same for a wavelength inside the range of the instrument [nm]; what was typed comes in steps of 0.1
/// nm. `refusalText` is the number of the words that refuse another one. Yields.
bool TakeWavelength(MainWindow& frame, NumberField& field, int refusalText, double& value);

/// The range of the instrument as it stands beside a field.
QString InstrumentRangeText(MainWindow& frame);

}  // namespace spectrane
