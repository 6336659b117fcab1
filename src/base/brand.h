#pragma once

namespace spectrane {

/// How the maker of a brand is reached; shown in the about box, read by nothing.
struct BrandContact {
  const char* EMail;
  const char* Phone;
  const char* WebSite;
};

/// What differs between the instrument brands the program serves.
struct Brand {
  int Number;
  /// Window caption and application title.
  const char* Title;
  /// Gain steps of the instrument.
  int GainCount;
  /// Text number of the company's title in the about box; 0: no title is shown.
  int CompanyTextId;
  /// The slit width is asked for at connect.
  bool ReadsSlit;
  BrandContact Contact;
};

/// The row of a brand number; a number without a row of its own gives the common row (number 0).
const Brand& BrandRow(int number);
/// The row this build serves.
const Brand& BuildBrand();

}  // namespace spectrane
