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

Conversion::Conversion(const Terms& terms) : terms_(terms) {
    floorCount_ = Count(kFloorK);
    floorSlope_ = KelvinPerRadiance(terms.r, terms.b, terms.f, kFloorK) / terms.gain;
    ceilingCount_ = Count(kCeilingK);
    ceilingSlope_ = KelvinPerRadiance(terms.r, terms.b, terms.f, kCeilingK) / terms.gain;
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
    if (!std::isfinite(conversion.floorCount_) || !std::isfinite(conversion.ceilingCount_) ||
        !(conversion.floorCount_ > terms.offset) ||
        !(conversion.ceilingCount_ > conversion.floorCount_) ||
        !IsPositiveFinite(conversion.floorSlope_) || !IsPositiveFinite(conversion.ceilingSlope_)) {
        return std::nullopt;
    }
    return conversion;
}

double Conversion::Radiance(double tempK) const {
    return PlanckRadiance(terms_.r, terms_.b, terms_.f, tempK);
}

double Conversion::TemperatureK(double count) const {
    if (count < floorCount_) {
        // Exponential decay keeps the temperature above 0 K and matches the floor's slope.
        return kFloorK * std::exp(floorSlope_ * (count - floorCount_) / kFloorK);
    }
    if (count > ceilingCount_) {
        return kCeilingK + ceilingSlope_ * (count - ceilingCount_);
    }
    const double radiance = (count - terms_.offset) / terms_.gain;
    return terms_.b / std::log(terms_.r / radiance + terms_.f);
}

double Conversion::Count(double tempK) const {
    if (tempK < kFloorK) {
        return floorCount_ + kFloorK / floorSlope_ * std::log(tempK / kFloorK);
    }
    if (tempK > kCeilingK) {
        return ceilingCount_ + (tempK - kCeilingK) / ceilingSlope_;
    }
    return terms_.offset + terms_.gain * Radiance(tempK);
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
    detector_ = detector;
    return true;
}

bool RadiometricModel::SetIntegrationTime(std::int32_t integrationTime) {
    if (integrationTime <= 0) {
        return false;
    }
    integrationTime_ = integrationTime;
    return true;
}

bool RadiometricModel::SetAux(double aux) {
    if (!std::isfinite(aux)) {
        return false;
    }
    aux_ = aux;
    return true;
}

bool RadiometricModel::SetObjectParameters(const ObjectParameters& parameters) {
    const bool ratiosValid = parameters.emissivity > 0.0 && parameters.emissivity <= 1.0 &&
                             parameters.transmission > 0.0 && parameters.transmission <= 1.0;
    if (!ratiosValid || !IsInAnalyticRange(parameters.reflectedC + kCelsiusOffset) ||
        !IsInAnalyticRange(parameters.atmosphereC + kCelsiusOffset)) {
        return false;
    }
    object_ = parameters;
    return true;
}

double RadiometricModel::BackgroundRadiance(const Detector& detector) const {
    const double reflected =
        PlanckRadiance(detector.r, detector.b, detector.f, object_.reflectedC + kCelsiusOffset);
    const double atmosphere =
        PlanckRadiance(detector.r, detector.b, detector.f, object_.atmosphereC + kCelsiusOffset);
    return object_.transmission * (1.0 - object_.emissivity) * reflected +
           (1.0 - object_.transmission) * atmosphere;
}

Conversion::Terms RadiometricModel::TermsAt(const Detector& detector, double time) const {
    const double scale = time / detector.referenceTime;
    return {detector.r, detector.b, detector.f,
            detector.offset + detector.drift * aux_ + scale * BackgroundRadiance(detector),
            scale * object_.emissivity * object_.transmission};
}

std::optional<Conversion> RadiometricModel::Current() const {
    if (!detector_) {
        return std::nullopt;
    }
    const double time =
        integrationTime_ ? static_cast<double>(*integrationTime_) : detector_->referenceTime;
    return Conversion::Make(TermsAt(*detector_, time));
}

std::optional<double> RadiometricModel::IntegrationTimeAt(double tempK, double count) const {
    if (!detector_ || !IsInAnalyticRange(tempK) || !std::isfinite(count)) {
        return std::nullopt;
    }
    const Detector& d = *detector_;
    const double signal = count - d.offset - d.drift * aux_;
    const double radiance =
        object_.emissivity * object_.transmission * PlanckRadiance(d.r, d.b, d.f, tempK) +
        BackgroundRadiance(d);
    const double time = d.referenceTime * signal / radiance;
    if (!IsPositiveFinite(time)) {
        return std::nullopt;
    }
    return time;
}

} // namespace camsim
