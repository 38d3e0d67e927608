#include "DistanceCorrSaveOutFile.h"

#include <algorithm>
#include <cstddef>
#include <locale>
#include <map>
#include <sstream>

#include "ErrorText.h"
#include "IndependentDataStore.h"
#include "UserCaseFileSpec.h"
#include "UserOutputCaseFile.h"
#include "VELA_Case.h"
#include "VELA_DataSource.h"
#include "VELA_Format.h"
#include "VELA_ValueLabelMap.h"

namespace {

const char* const kFileLabel = "Distance Matrix";
const char* const kRowNameVariable = "VarName_";
const int kRowNameWidth = 8;  // a row name fills one 8-byte text column

const int kStringFormat = 1;   // "A"
const int kNumericFormat = 5;  // "F"
const int kNominal = 1;
const int kScale = 3;
const int kDistanceWidth = 8;
const int kDistanceDecimals = 3;

// The value in fixed notation with 3 decimals, independent of the user's locale.
std::string _round(double value) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.setf(std::ios::fixed, std::ios::floatfield);
    text.precision(3);
    text << value;
    return text.str();
}

// A saved block needs an n x n matrix over the record's n values.
bool hasSquareMatrix(const DistanceCorrDescriptiveResult& record) {
    const auto& matrix = record.distanceMatrix;
    return !matrix.empty() && matrix.size() == matrix.front().size() &&
           matrix.size() == record.values.size();
}

}  // namespace

DistanceCorrSaveOutFile::DistanceCorrSaveOutFile(
    const DistanceCorrInputSettings& settings,
    std::vector<DistanceCorrDescriptiveResult>& descriptives)
    : settings_(settings), descriptives_(descriptives) {}

DistanceCorrSaveOutFile::~DistanceCorrSaveOutFile() {
    if (state_ != FileClosed) Close();
    outFile_.reset();
}

unsigned DistanceCorrSaveOutFile::start() {
    if (!settings_.printSettings().get_save()) return 0;
    if (descriptives_.empty()) return 1;

    WriterState state = PrepareDataOutFile();
    if (state != FileFailed) state = WriteDataOutFile();
    if (state != FileFailed) state = CloseDataOutFile();
    return state == FileFailed ? 1 : 0;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::PrepareDataOutFile() {
    const UserCaseFileSpec& spec = settings_.printSettings().GetOutFileSpec();
    if (spec.IsInit()) PrepareNewFile(spec);
    return state_;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::PrepareNewFile(
    const UserCaseFileSpec& spec) {
    try {
        outFile_.reset(new UserOutputCaseFile(spec));
    } catch (const ErrorText&) {
        state_ = FileFailed;
        return state_;
    }
    dataSource_ = outFile_->DataSource();
    if (dataSource_ == nullptr) {
        state_ = FileFailed;
        return state_;
    }
    state_ = FileReady;
    try {
        NewFileDictionary();
    } catch (const ErrorText&) {
        state_ = FileFailed;
    }
    return state_;
}

VELA_Variable DistanceCorrSaveOutFile::AddVariable(std::string& name, std::string& label,
                                                   int width) {
    if (dataSource_ == nullptr) return VELA_Variable();
    VELA_Variable variable;
    unsigned int index = 0;
    if (width > 0) {
        variable = dataSource_->MakeVariable(width, &index);
        variable.SetName(name);
        variable.SetFormat(static_cast<VELA_Format::FormatType>(kStringFormat), width, 0);
        variable.SetWriteFormat(static_cast<VELA_Format::FormatType>(kStringFormat), width, 0);
        variable.SetMeasurementLevel(kNominal);
    } else {
        variable = dataSource_->MakeVariable(0, &index);
        variable.SetName(name);
        variable.SetFormat(static_cast<VELA_Format::FormatType>(kNumericFormat), kDistanceWidth,
                           kDistanceDecimals);
        variable.SetWriteFormat(static_cast<VELA_Format::FormatType>(kNumericFormat),
                                kDistanceWidth, kDistanceDecimals);
        variable.SetMeasurementLevel(kScale);
    }
    if (variable && !label.empty()) variable.SetLabel(label);
    return variable;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::NewFileDictionary() {
    if (state_ != FileReady || dataSource_ == nullptr) {
        state_ = FileFailed;
        return state_;
    }
    dataSource_->SetLabel(kFileLabel);
    std::string rowNameVariable = kRowNameVariable;
    std::string noLabel;
    AddVariable(rowNameVariable, noLabel, kRowNameWidth);

    if (descriptives_.empty()) return state_;

    // Row names run on from block to block; only the first saved variable
    // creates the columns P1 ... Pn, which the later blocks share.
    std::size_t rowCounter = 1;
    std::map<std::string, std::string> labels;  // ordered by row name as text
    bool columnsExist = false;
    for (const std::string& name : settings_.printSettings().get_configList()) {
        const auto record =
            std::find_if(descriptives_.begin(), descriptives_.end(),
                         [&name](const DistanceCorrDescriptiveResult& candidate) {
                             return candidate.varName == name && hasSquareMatrix(candidate);
                         });
        if (record == descriptives_.end()) continue;

        for (std::size_t c = 0; c < record->values.size(); ++c) {
            std::string rowName = "P" + std::to_string(rowCounter);
            ++rowCounter;
            if (!columnsExist) {
                VELA_Variable column = AddVariable(rowName, noLabel, 0);
                rowNames_.push_back(column ? column.GetName() : rowName);
            } else {
                rowNames_.push_back(rowName);
            }
            labels[rowName] = "[" + record->varName + " = " + _round(record->values[c]) + "]";
        }
        columnsExist = true;
    }

    VELA_Variable rowNameColumn = dataSource_->GetVariable(0);
    if (rowNameColumn) {
        VELA_ValueLabelMap valueLabels(rowNameColumn.GetType());
        for (const auto& pair : labels) valueLabels.AddPair(pair.first, pair.second);
        rowNameColumn.SetValueLabels(valueLabels);
    }
    dataSource_->EndDictionary();
    state_ = DictionaryDone;
    return state_;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::WriteDataOutFile() {
    if (state_ != FileFailed && settings_.printSettings().GetOutFileSpec().IsInit()) {
        AddDataToFile();
    }
    return state_;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::AddDataToFile() {
    if (dataSource_ == nullptr || outFile_ == nullptr) {
        state_ = FileFailed;
        return state_;
    }
    const int columns = dataSource_->ColumnCount();
    const std::size_t distanceColumns = columns > 1 ? static_cast<std::size_t>(columns - 1) : 0;
    std::vector<OBS> buffer(static_cast<std::size_t>(std::max(columns, 1)));
    VELA_Case dataCase(*dataSource_, buffer.data());
    IndependentDataStore* store = outFile_->DataStore();

    if (state_ != FileFailed && !descriptives_.empty()) {
        if (store == nullptr) {
            state_ = FileFailed;
            return state_;
        }
        try {
            std::size_t nameIndex = 0;
            bool blockWritten = false;
            for (const std::string& name : settings_.printSettings().get_configList()) {
                for (const DistanceCorrDescriptiveResult& record : descriptives_) {
                    if (record.varName != name) continue;
                    if (blockWritten) {
                        dataCase.InitCase();  // blank separator between blocks
                        store->AddCase(dataCase);
                    }
                    if (hasSquareMatrix(record)) {
                        const std::size_t n = record.values.size();
                        for (std::size_t r = 0; r < n && nameIndex < rowNames_.size();
                             ++r, ++nameIndex) {
                            dataCase.InitCase();
                            std::string rowName = rowNames_[nameIndex];
                            rowName.resize(kRowNameWidth, ' ');
                            dataCase.SetColumnValue(0, rowName.c_str(), kRowNameWidth);
                            const std::vector<double>& distances = record.distanceMatrix[r];
                            const std::size_t filled =
                                std::min({n, distances.size(), distanceColumns});
                            for (std::size_t j = 0; j < filled; ++j) {
                                dataCase.SetColumnValue(static_cast<int>(j + 1), distances[j]);
                            }
                            store->AddCase(dataCase);
                        }
                    }
                    blockWritten = true;
                }
            }
        } catch (const ErrorText&) {
            state_ = FileFailed;
        }
    }
    if (state_ != FileFailed) state_ = DataWritten;
    return state_;
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::CloseDataOutFile() {
    return Close();
}

DistanceCorrSaveOutFile::WriterState DistanceCorrSaveOutFile::Close() {
    if (state_ != FileReady && state_ != DictionaryDone && state_ != DataWritten) {
        state_ = FileFailed;
    }
    if (state_ == FileFailed) return state_;

    if (dataSource_ != nullptr) {
        try {
            dataSource_->CloseData();
        } catch (const ErrorText&) {
            // The file object is left to the host after a failed close.
            state_ = FileFailed;
            static_cast<void>(outFile_.release());
            dataSource_ = nullptr;
            return state_;
        }
    }
    outFile_.reset();
    dataSource_ = nullptr;
    state_ = FileClosed;
    return state_;
}
