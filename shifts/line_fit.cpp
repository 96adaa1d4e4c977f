#include <cmath>

#include "app/citrans.h"

float CITRANS::getAverage(const std::vector<float>& values) const {
  if (values.empty()) {
    return 0;
  }
  float sum = 0;
  for (const float value : values) {
    sum += value;
  }
  return sum / static_cast<float>(values.size());
}

float CITRANS::getSTDev(const std::vector<float>& values) const {
  float squares = 0;
  for (const float value : values) {
    squares += value * value;
  }
  return std::sqrt(squares / (static_cast<float>(values.size()) - 1.0F));
}

int CITRANS::LinearLeastSquareFitting(const std::vector<float>& x, const std::vector<float>& y,
                                      float& slope, float& intercept, float& error) const {
  if (x.size() != y.size()) {
    return 0;
  }
  const std::size_t count = x.size();
  const float n = static_cast<float>(count);
  std::vector<float> xy;
  std::vector<float> xx;
  for (std::size_t i = 1; i < count; ++i) {
    xy.push_back(x[i] * y[i]);
    xx.push_back(x[i] * x[i]);
  }
  const float meanX = getAverage(x);
  const float meanY = getAverage(y);
  slope = (n * getAverage(xy) - n * meanY * meanX) / (n * getAverage(xx) - meanX * n * meanX);
  intercept = meanY - meanX * slope;

  std::vector<float> residuals;
  for (std::size_t i = 1; i < count; ++i) {
    residuals.push_back(y[i] - (slope * x[i] + intercept));
  }
  error = static_cast<float>(static_cast<double>(getSTDev(residuals)) /
                             std::sqrt(static_cast<double>(count)));
  return 1;
}
