// The simulated camera's radiometry: detector counts as a Planck-law signal of the object's
// temperature, seen through object parameters and scaled by integration time. Windows-free, so
// the calibration object only forwards its calls here.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace camsim {

// A factory calibration as the calibration object receives it. Kind 2 gives the Planck factor
// R directly in coef[0]; every other kind gives it as the ratio coef[0] / coefExtra.
// coef[1] B (K), coef[2] F, coef[3] O (counts), coef[4] reference integration time,
// coef[5] drift (counts per unit of the auxiliary value).
struct FactoryCalibration {
    std::uint32_t kind = 0;
    std::array<double, 6> coef{};
    double coefExtra = 0.0;
    std::uint32_t countsLow = 0;
    std::uint32_t countsHigh = 0;
    double tempMinK = 0.0;
    double tempMaxK = 0.0;
};

// What lies between the object and the detector; temperatures in Celsius.
struct ObjectParameters {
    double emissivity = 1.0;
    double reflectedC = 20.0;
    double transmission = 1.0;
    double atmosphereC = 20.0;
};

// The model is analytic for object temperatures inside [kFloorK, kCeilingK]. Beyond them the
// count-to-temperature curve continues smoothly (decaying towards 0 K below, linear above), so
// every count has a finite temperature and the curve stays monotone.
inline constexpr double kFloorK = 150.0;
inline constexpr double kCeilingK = 2000.0;
inline constexpr double kCelsiusOffset = 273.15;

// The count-to-temperature relation fixed by one set of inputs. Strictly increasing both ways.
class Conversion {
public:
    struct Terms {
        double r;      // Planck factor R
        double b;      // B, kelvin
        double f;      // F
        double offset; // counts at zero object radiance
        double gain;   // counts per unit of object radiance
    };

    // Empty when the terms give no usable signal over the analytic range.
    static std::optional<Conversion> Make(const Terms& terms);

    double TemperatureK(double count) const;
    // The real-valued count of a temperature; tempK must be above 0.
    double Count(double tempK) const;
    // The nearest 16-bit count of a Celsius temperature; empty when the temperature is not
    // above 0 K or its count lies outside 0..65535.
    std::optional<std::uint16_t> NearestCount(double tempC) const;

    // Celsius temperatures of counts, entry by entry. False, leaving `celsius` partly written,
    // when a count exceeds largestCount or the spans differ in length.
    bool FillCelsius(std::span<const std::uint16_t> counts, std::uint16_t largestCount,
                     std::span<float> celsius) const;

private:
    explicit Conversion(const Terms& terms);

    double Radiance(double tempK) const;

    Terms mTerms;
    double mFloorCount = 0.0;
    double mFloorSlope = 0.0; // kelvin per count at the floor
    double mCeilingCount = 0.0;
    double mCeilingSlope = 0.0;
};

// One calibration object's inputs; each setter refuses nonsense and keeps the previous value.
class RadiometricModel {
public:
    bool LoadFactory(const FactoryCalibration& calibration);
    bool SetIntegrationTime(std::int32_t integrationTime);
    bool SetAux(double aux);
    bool SetObjectParameters(const ObjectParameters& parameters);

    // Empty until a factory calibration is loaded.
    std::optional<Conversion> Current() const;

    // The integration time at which an object at tempK gives `count`; empty when no positive
    // time does, or tempK lies outside the analytic range.
    std::optional<double> IntegrationTimeAt(double tempK, double count) const;

private:
    struct Detector {
        double r, b, f, offset, referenceTime, drift;
    };

    static std::optional<Detector> DetectorOf(const FactoryCalibration& calibration);
    // Counts at zero object radiance and counts per unit radiance, at integration time `time`.
    Conversion::Terms TermsAt(const Detector& detector, double time) const;
    double BackgroundRadiance(const Detector& detector) const;

    std::optional<Detector> mDetector;
    std::optional<std::int32_t> mIntegrationTime; // the reference time until set
    double mAux = 0.0;
    ObjectParameters mObject;
};

} // namespace camsim
