#include "radiometric_model.h"

#include <cmath>

namespace camsim {

namespace {

// Radiance in the units of R: R / (exp(B / T) - F).
double PlanckRadiance(double r, double b, double f, double tempK) {
    return r / (std::exp(b / tempK) - f);
}

// dT/dW of the inverse Planck curve at tempK, written without W so it stays finite where W is
// tiny: T^2 (e - F)^2 / (B R e) with e = exp(B / T).
double KelvinPerRadiance(double r, double b, double f, double tempK) {
    const double e = std::exp(b / tempK);
    return tempK * tempK * (e - f) * (e - f) / (b * r * e);
}

bool IsPositiveFinite(double value) {
    return std::isfinite(value) && value > 0.0;
}

// NaN fails both comparisons.
bool IsInAnalyticRange(double tempK) {
    return tempK >= kFloorK && tempK <= kCeilingK;
}

} // namespace

Conversion::Conversion(const Terms& terms) : mTerms(terms) {
    mFloorCount = Count(kFloorK);
    mFloorSlope = KelvinPerRadiance(terms.r, terms.b, terms.f, kFloorK) / terms.gain;
    mCeilingCount = Count(kCeilingK);
    mCeilingSlope = KelvinPerRadiance(terms.r, terms.b, terms.f, kCeilingK) / terms.gain;
}

std::optional<Conversion> Conversion::Make(const Terms& terms) {
    if (!IsPositiveFinite(terms.r) || !IsPositiveFinite(terms.b) || !std::isfinite(terms.f) ||
        !std::isfinite(terms.offset) || !IsPositiveFinite(terms.gain)) {
        return std::nullopt;
    }
    // F must stay below exp(B / T) over the whole analytic range, or the signal has a pole.
    if (!(std::exp(terms.b / kCeilingK) - terms.f > 0.0) ||
        !std::isfinite(std::exp(terms.b / kFloorK))) {
        return std::nullopt;
    }
    const Conversion conversion(terms);
    // The floor must be resolvable above the offset, or counts near it have no temperature.
    if (!std::isfinite(conversion.mFloorCount) || !std::isfinite(conversion.mCeilingCount) ||
        !(conversion.mFloorCount > terms.offset) ||
        !(conversion.mCeilingCount > conversion.mFloorCount) ||
        !IsPositiveFinite(conversion.mFloorSlope) || !IsPositiveFinite(conversion.mCeilingSlope)) {
        return std::nullopt;
    }
    return conversion;
}

double Conversion::Radiance(double tempK) const {
    return PlanckRadiance(mTerms.r, mTerms.b, mTerms.f, tempK);
}

double Conversion::TemperatureK(double count) const {
    if (count < mFloorCount) {
        // Exponential decay keeps the temperature above 0 K and matches the floor's slope.
        return kFloorK * std::exp(mFloorSlope * (count - mFloorCount) / kFloorK);
    }
    if (count > mCeilingCount) {
        return kCeilingK + mCeilingSlope * (count - mCeilingCount);
    }
    const double radiance = (count - mTerms.offset) / mTerms.gain;
    return mTerms.b / std::log(mTerms.r / radiance + mTerms.f);
}

double Conversion::Count(double tempK) const {
    if (tempK < kFloorK) {
        return mFloorCount + kFloorK / mFloorSlope * std::log(tempK / kFloorK);
    }
    if (tempK > kCeilingK) {
        return mCeilingCount + (tempK - kCeilingK) / mCeilingSlope;
    }
    return mTerms.offset + mTerms.gain * Radiance(tempK);
}

std::optional<std::uint16_t> Conversion::NearestCount(double tempC) const {
    const double tempK = tempC + kCelsiusOffset;
    if (!(tempK > 0.0) || !std::isfinite(tempK)) {
        return std::nullopt;
    }
    const double count = std::round(Count(tempK));
    if (!(count >= 0.0 && count <= 65535.0)) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(count);
}

bool Conversion::FillCelsius(std::span<const std::uint16_t> counts, std::uint16_t largestCount,
                             std::span<float> celsius) const {
    if (counts.size() != celsius.size()) {
        return false;
    }
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > largestCount) {
            return false;
        }
        const auto value = static_cast<float>(TemperatureK(counts[i]) - kCelsiusOffset);
        if (!std::isfinite(value)) {
            return false;
        }
        celsius[i] = value;
    }
    return true;
}

std::optional<RadiometricModel::Detector>
RadiometricModel::DetectorOf(const FactoryCalibration& calibration) {
    for (const double coef : calibration.coef) {
        if (!std::isfinite(coef)) {
            return std::nullopt;
        }
    }
    const auto& c = calibration.coef;
    double r = c[0];
    if (calibration.kind != 2) {
        if (!IsPositiveFinite(calibration.coefExtra)) {
            return std::nullopt;
        }
        r = c[0] / calibration.coefExtra;
    }
    const Detector detector{r, c[1], c[2], c[3], c[4], c[5]};
    if (!IsPositiveFinite(detector.referenceTime)) {
        return std::nullopt;
    }
    // A detector is usable when, at its reference time and without drift, it has a signal.
    if (!Conversion::Make({detector.r, detector.b, detector.f, detector.offset, 1.0})) {
        return std::nullopt;
    }
    return detector;
}

bool RadiometricModel::LoadFactory(const FactoryCalibration& calibration) {
    if (!(calibration.countsLow < calibration.countsHigh && calibration.countsHigh <= 65535) ||
        !IsInAnalyticRange(calibration.tempMinK) || !IsInAnalyticRange(calibration.tempMaxK) ||
        !(calibration.tempMinK < calibration.tempMaxK)) {
        return false;
    }
    const auto detector = DetectorOf(calibration);
    if (!detector) {
        return false;
    }
    mDetector = detector;
    return true;
}

bool RadiometricModel::SetIntegrationTime(std::int32_t integrationTime) {
    if (integrationTime <= 0) {
        return false;
    }
    mIntegrationTime = integrationTime;
    return true;
}

bool RadiometricModel::SetAux(double aux) {
    if (!std::isfinite(aux)) {
        return false;
    }
    mAux = aux;
    return true;
}

bool RadiometricModel::SetObjectParameters(const ObjectParameters& parameters) {
    const bool ratiosValid = parameters.emissivity > 0.0 && parameters.emissivity <= 1.0 &&
                             parameters.transmission > 0.0 && parameters.transmission <= 1.0;
    if (!ratiosValid || !IsInAnalyticRange(parameters.reflectedC + kCelsiusOffset) ||
        !IsInAnalyticRange(parameters.atmosphereC + kCelsiusOffset)) {
        return false;
    }
    mObject = parameters;
    return true;
}

double RadiometricModel::BackgroundRadiance(const Detector& detector) const {
    const double reflected =
        PlanckRadiance(detector.r, detector.b, detector.f, mObject.reflectedC + kCelsiusOffset);
    const double atmosphere =
        PlanckRadiance(detector.r, detector.b, detector.f, mObject.atmosphereC + kCelsiusOffset);
    return mObject.transmission * (1.0 - mObject.emissivity) * reflected +
           (1.0 - mObject.transmission) * atmosphere;
}

Conversion::Terms RadiometricModel::TermsAt(const Detector& detector, double time) const {
    const double scale = time / detector.referenceTime;
    return {detector.r, detector.b, detector.f,
            detector.offset + detector.drift * mAux + scale * BackgroundRadiance(detector),
            scale * mObject.emissivity * mObject.transmission};
}

std::optional<Conversion> RadiometricModel::Current() const {
    if (!mDetector) {
        return std::nullopt;
    }
    const double time =
        mIntegrationTime ? static_cast<double>(*mIntegrationTime) : mDetector->referenceTime;
    return Conversion::Make(TermsAt(*mDetector, time));
}

std::optional<double> RadiometricModel::IntegrationTimeAt(double tempK, double count) const {
    if (!mDetector || !IsInAnalyticRange(tempK) || !std::isfinite(count)) {
        return std::nullopt;
    }
    const Detector& d = *mDetector;
    const double signal = count - d.offset - d.drift * mAux;
    const double radiance =
        mObject.emissivity * mObject.transmission * PlanckRadiance(d.r, d.b, d.f, tempK) +
        BackgroundRadiance(d);
    const double time = d.referenceTime * signal / radiance;
    if (!IsPositiveFinite(time)) {
        return std::nullopt;
    }
    return time;
}

} // namespace camsim
